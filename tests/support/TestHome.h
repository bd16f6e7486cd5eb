#pragma once

#include <QString>
#include <QTemporaryDir>

/// A fresh world for one test: application folder and configuration in a temporary folder, decimal comma, German, no
/// open catalogue left from before.
class TestHome {
public:
    TestHome();
    ~TestHome();

    QString path(const QString& name = QString()) const;

private:
    QTemporaryDir folder_;
};
