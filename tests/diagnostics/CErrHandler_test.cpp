#include "diagnostics/GestureScope.h"
#include "diagnostics/errors.h"
#include "platform/dao/DBEngine.h"
#include "support/ScriptedAsker.h"
#include "support/TestHome.h"

#include <QDir>
#include <QFile>
#include <QRegularExpression>
#include <filesystem>
#include <gtest/gtest.h>
#include <new>
#include <vector>

using namespace Qt::StringLiterals;

namespace {

QString readFile(const QString& path) {
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? QString::fromUtf8(file.readAll()) : u"missing"_s;
}

/// The report's text with what differs from run to run taken out.
QString readReport(const TestHome& home, const QString& name) {
    QString text = readFile(home.path(u"home/"_s + name));
    text.replace(QRegularExpression(u"Current Time   : [^\r]+"_s), u"Current Time   : now"_s);
    text.replace(QDir::currentPath(), u"here"_s).replace(home.path(u"home"_s), u"application"_s);
    return text;
}

const QString additional = u"Additional Information\r\n"
                           "----------------------\r\n"
                           "Current Directory: here\r\n"
                           "App Title: Varidex\r\n"
                           "App CompanyName: Norvik\r\n"
                           "App Major: 3\r\n"
                           "App Minor: 6\r\n"
                           "App Revision: 0\r\n"
                           "App Path: application\r\n"
                           "App ProductName: Varidex\r\n"_s;

class ErrorReports : public ::testing::Test {
protected:
    TestHome home;
    ScriptedAsker asker;
    CErrHandler handler;

    void SetUp() override {
        dao::DBEngine::instance().errors().clear();
        handler.Destination = home.path(u"home/Error.log"_s);
        handler.Push(u"[frmMain.InitializeForm]"_s);
        handler.Push(u"[mdDatabase.OpenQXDatabase]"_s);
    }
};

} // namespace

TEST_F(ErrorReports, AProgramErrorIsWrittenWithItsStackAndShown) {
    handler.HandleError(13, u"Type mismatch"_s);
    EXPECT_EQ(readReport(home, u"Error.log"_s), u"Varidex Application Error Information\r\n"
                                                "====================================\r\n"
                                                "Current Time   : now\r\n"
                                                "Error String   : Type mismatch\r\n"
                                                "Error Number   : 13\r\n"
                                                "Error Line     : 0\r\n"
                                                "Error Procedure: [mdDatabase.OpenQXDatabase]\r\n"
                                                "\r\n"
                                                "Procedure Stack\r\n"
                                                "---------------\r\n"
                                                "01  [frmMain.InitializeForm]\r\n"
                                                "02    [mdDatabase.OpenQXDatabase]\r\n"
                                                "\r\n"
                                                "\r\n"_s +
                                                    additional);
    EXPECT_FALSE(QFile::exists(home.path(u"home/Daojet.log"_s)));
    ASSERT_EQ(asker.boxes.size(), 1u);
    EXPECT_EQ(asker.lastText(), u"Folgender Fehler ist in der Prozedur: \r\n[mdDatabase.OpenQXDatabase] in Zeile  0"
                                " aufgetreten: \r\nFehler: (13) Type mismatch"_s);
    EXPECT_EQ(asker.boxes[0].title, u"Varidex"_s);
    EXPECT_EQ(asker.boxes[0].icon, ui::Icon::Critical);
    gLanguage = 1;
    handler.HandleError(13, u"Type mismatch"_s);
    EXPECT_EQ(asker.lastText(),
              u"Error in Procedure: \r\n[mdDatabase.OpenQXDatabase] at Line  0\r\nError: (13) Type mismatch"_s);
}

TEST_F(ErrorReports, ADatabaseErrorHasAReportOfItsOwnWithAGermanHeading) {
    gLanguage = 1;
    handler.HandleError(13, u"Type mismatch"_s);
    const QString before = readFile(home.path(u"home/Error.log"_s));
    asker.setPointer(ui::Pointer::Wait);
    handler.Pop();
    handler.HandleDBError(u"Not there\r\nDAO.Workspace"_s);
    const QString report = readReport(home, u"Daojet.log"_s);
    EXPECT_TRUE(report.startsWith(u"Varidex Datenbankzugriffsfehler-Informationen\r\n"
                                  "====================================\r\n"
                                  "Current Time   : now\r\n"
                                  "Error String   : Not there\r\nDAO.Workspace\r\n"
                                  "Error Procedure: [frmMain.InitializeForm]\r\n\r\n"_s));
    EXPECT_TRUE(report.endsWith(u"\r\n01  [frmMain.InitializeForm]\r\n\r\n\r\n"_s + additional));
    EXPECT_EQ(readFile(home.path(u"home/Error.log"_s)), before);
    EXPECT_EQ(asker.lastText(),
              u"Error in Procedure: \r\n[frmMain.InitializeForm] at Line  0\r\nNot there\r\nDAO.Workspace"_s);
    EXPECT_EQ(asker.pointer(), ui::Pointer::Default);
}

TEST_F(ErrorReports, OnlyTheLastErrorIsOnDiskAndItsTextIsCutThereButNotInTheBox) {
    handler.HandleError(5, u"first"_s);
    const QString longText(300, u'x');
    handler.HandleError(6, longText);
    const QString report = readReport(home, u"Error.log"_s);
    EXPECT_FALSE(report.contains(u"first"_s));
    EXPECT_TRUE(report.contains(u"Error String   : "_s + longText.left(255) + u"\r\n"_s));
    EXPECT_TRUE(asker.lastText().endsWith(longText));
}

TEST_F(ErrorReports, AReportThatCannotBeWrittenStillShowsItsBox) {
    handler.Destination = home.path(u"nowhere/Error.log"_s);
    handler.HandleError(13, u"Type mismatch"_s);
    EXPECT_EQ(asker.boxes.size(), 1u);
    handler.DisplayMsgOnError = false;
    handler.HandleError(13, u"Type mismatch"_s);
    EXPECT_EQ(asker.boxes.size(), 1u);
}

TEST(ProcedureStack, LabelsBeyondTheDepthVanishWhileTheDepthIsCounted) {
    CErrHandler handler;
    handler.Pop();
    EXPECT_EQ(handler.depth(), 0);
    for (int i = 1; i <= 130; ++i)
        handler.Push(QString::number(i));
    EXPECT_EQ(handler.current(), QString());
    for (int i = 130; i > 100; --i)
        handler.Pop();
    EXPECT_EQ(handler.current(), u"100"_s);
    for (int i = 100; i > 0; --i)
        handler.Pop();
    EXPECT_EQ(handler.depth(), 0);
}

TEST(Failures, GoToTheReportThatTheEnginesErrorListAsksFor) {
    const TestHome home;
    ScriptedAsker asker;
    gErrHandler.Destination = home.path(u"home/Error.log"_s);
    EXPECT_FALSE(attempt([] { dao::raiseEngineError(3078, u"tkey_Nothing"_s); }));
    EXPECT_TRUE(QFile::exists(home.path(u"home/Daojet.log"_s)));
    EXPECT_FALSE(QFile::exists(home.path(u"home/Error.log"_s)));
    EXPECT_TRUE(asker.lastText().contains(u"tkey_Nothing"_s));
    dao::DBEngine::instance().errors().clear();
    EXPECT_FALSE(attempt([] { dao::raiseRuntimeError(11); }));
    EXPECT_TRUE(QFile::exists(home.path(u"home/Error.log"_s)));
    EXPECT_TRUE(attempt([] {}));
}

TEST(Failures, TheStandardErrorBoxRetriesIgnoresOrLeaves) {
    const TestHome home;
    ScriptedAsker asker;
    int runs = 0;
    const auto step = [&] {
        ++runs;
        throw dao::Error(53, u"File not found"_s);
    };
    asker.answer(ui::Answer::Retry).answer(ui::Answer::Ignore);
    EXPECT_EQ(trapped(step), Trap::Ignored);
    EXPECT_EQ(runs, 2);
    EXPECT_EQ(asker.lastText(), u"53\r\nFile not found"_s);
    EXPECT_EQ(asker.boxes[0].title, u"Fehler"_s);
    asker.setPointer(ui::Pointer::Wait);
    asker.answer(ui::Answer::Abort);
    EXPECT_EQ(trapped(step), Trap::Aborted);
    EXPECT_EQ(asker.pointer(), ui::Pointer::Default);
}

TEST(Failures, TheAnswerOnAFileHoldsForTheRestOfTheGestureAndForNoOtherFile) {
    const TestHome home;
    for (const auto& [answer, outcome] :
         {std::pair(ui::Answer::Ignore, Trap::Ignored), {ui::Answer::Abort, Trap::Aborted}}) {
        ScriptedAsker asker;
        const GestureScope gesture;
        const auto fails = [](int number, const QString& text) {
            return trapped([&] { throw dao::Error(number, text); });
        };
        asker.answer(answer);
        EXPECT_EQ(fails(3051, u"cannot open the file '/a/x.mdb'."_s), outcome);
        EXPECT_EQ(fails(3343, u"Unrecognized database format '/a/x.mdb'."_s), outcome);
        EXPECT_EQ(asker.boxes.size(), 1u);
        for (const QString& table : {u"Study"_s, u"Category"_s, u"Study"_s})
            attempt([&] { throw dao::Error(3078, table); }, reportProgramError);
        EXPECT_EQ(asker.boxes.size(), 3u) << "a missing table is no fault of the file; one text is told once";
        asker.answer(ui::Answer::Abort);
        EXPECT_EQ(fails(3343, u"Unrecognized database format '/a/y.mdb'."_s), Trap::Aborted);
        EXPECT_EQ(asker.boxes.size(), 4u);
    }
}

TEST(Failures, WhatTheStandardLibraryThrowsEndsNoHandlerAndIsNotTakenForTheEnginesLastError) {
    const TestHome home;
    ScriptedAsker asker;
    gErrHandler.Destination = home.path(u"home/Error.log"_s);
    struct Case {
        std::function<void()> step;
        QString number, words;
    };
    const std::vector<Case> cases{
        {[] { throw std::bad_alloc(); }, u"7"_s, u"Out of memory"_s},
        {[] { (void)std::filesystem::file_size("/no such folder/cases"); }, u"75"_s, u"/no such folder/cases"_s},
        {[] { (void)std::vector<int>().at(3); }, u"51"_s, u"Internal error ("_s},
    };
    for (const Case& one : cases) {
        EXPECT_FALSE(attempt([] { dao::raiseEngineError(3078, u"tkey_Nothing"_s); }));
        EXPECT_FALSE(attempt(one.step));
        EXPECT_TRUE(asker.lastText().contains(u'(' + one.number + u") "_s)) << asker.lastText().toStdString();
        EXPECT_TRUE(asker.lastText().contains(one.words)) << asker.lastText().toStdString();
        EXPECT_TRUE(QFile::remove(gErrHandler.Destination)) << "the report";
        asker.answer(ui::Answer::Retry).answer(ui::Answer::Ignore);
        EXPECT_EQ(trapped(one.step), Trap::Ignored);
        EXPECT_TRUE(asker.lastText().startsWith(one.number + u"\r\n"_s)) << asker.lastText().toStdString();
    }
}

TEST(Failures, TheLanguageProceduresHaveABoxOfTheirOwn) {
    const TestHome home;
    ScriptedAsker asker;
    ReportProcedureError(dao::Error(13, u"Type mismatch"_s), u"SetLanguage"_s);
    EXPECT_EQ(asker.lastText(),
              u"Fehler bei: SetLanguage\r\nFehlernummer: 13\r\nFehlerbezeichnung:\r\nType mismatch"_s);
    EXPECT_EQ(asker.boxes[0].title, u"VB-Laufzeitfehler"_s);
    gLanguage = 1;
    ReportProcedureError(dao::Error(13, u"Type mismatch"_s), u"SetLanguage"_s);
    EXPECT_EQ(asker.lastText(), u"Error at: SetLanguage\r\nErrorNumber: 13\r\nErrorDescription:\r\nType mismatch"_s);
    EXPECT_EQ(asker.boxes[1].title, u"VB-RuntimeError"_s);
}
