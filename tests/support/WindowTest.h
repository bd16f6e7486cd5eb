#pragma once

#include "support/ScriptedAsker.h"
#include "support/TestHome.h"

#include <QString>
#include <QTimer>
#include <gtest/gtest.h>
#include <memory>

class TestCatalogue;

/// A world for a test of windows: fresh home with the system database, a script of answers, and a watch that ends a
/// modal window nobody expects, so that the test fails instead of hanging.
class WindowTest : public testing::Test {
protected:
    WindowTest();
    ~WindowTest() override;

    TestHome home;
    ScriptedAsker asker;

    /// Copies the sample archive's catalogue into the home (its case files stay where they are) and opens it with
    /// DataPath set.
    /// @return its path
    QString openSampleArchive();
    /// Loads the English texts, or goes back to the German ones, as the language menu does.
    void setLanguage(int language);
    /// Runs what is pending.
    static void settle();

private:
    QTimer watch_;
    std::unique_ptr<QObject> popups_;
};
