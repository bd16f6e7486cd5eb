#include "VdxRunner.h"

#include "support/TestCatalogue.h"
#include "vdx/Command.h"

#include <QFile>
#include <cstdio>
#include <gtest/gtest.h>

VdxHome::VdxHome() {
    EXPECT_TRUE(QFile::copy(QStringLiteral(VARIDEX_BINARIES "/Vx.mdb"), path(QStringLiteral("home/Vx.mdb"))));
}

namespace {

QString takeAll(std::FILE* file) {
    std::rewind(file);
    QByteArray all;
    char piece[65536];
    while (const size_t got = std::fread(piece, 1, sizeof piece, file))
        all.append(piece, static_cast<qsizetype>(got));
    std::fclose(file);
    return QString::fromUtf8(all);
}

} // namespace

VdxResult runVdx(const QStringList& arguments) {
    std::FILE* out = std::tmpfile();
    std::FILE* err = std::tmpfile();
    std::vector<std::string> typed;
    for (const QString& argument : arguments)
        typed.push_back(argument.toStdString());
    VdxResult result;
    result.status = runVdx(typed, out, err);
    result.out = takeAll(out);
    result.err = takeAll(err);
    return result;
}

VdxArchive::VdxArchive() {
    TestCatalogue made(home_.path());
    made.fill();
    catalogue_ = made.path();
    data_ = made.dataFolder();
}
