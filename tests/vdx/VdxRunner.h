#pragma once

#include "support/TestHome.h"

#include <QStringList>
#include <gtest/gtest.h>

/// A fresh world with the texts that the build made.
class VdxHome : public TestHome {
public:
    VdxHome();
};

/// What one run of vdx printed.
struct VdxResult {
    int status = 0;
    QString out, err;
};

/// Runs vdx in this process.
VdxResult runVdx(const QStringList& arguments);

/// The standing example in files, closed again.
class VdxArchive : public ::testing::Test {
protected:
    VdxArchive();

    VdxHome home_;
    QString catalogue_, data_;
};
