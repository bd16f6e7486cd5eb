#include "analysis/Instructions.h"

#include "analysis/AnalysisModel.h"
#include "analysis/request/DescriptivesChoice.h"
#include "analysis/request/Instruction.h"
#include "app/globals.h"
#include "catalogue/CDaoDatabase.h"
#include "config/Options.h"
#include "support/FullDisk.h"
#include "support/PrintQt.h"
#include "support/ScriptedAsker.h"
#include "support/TestCatalogue.h"
#include "support/TestHome.h"

#include <QFileInfo>
#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace {

constexpr auto Ok = ui::Answer::Ok, Cancel = ui::Answer::Cancel;

class InstructionCommands : public testing::Test {
protected:
    InstructionCommands() : catalogue_(home_.path(u"archive"_s)) {
        catalogue_.fill();
        const QString table = u"QX1919_1"_s;
        catalogue_.addVariable(u"QX1919"_s, u"V4"_s, table, {{"dt_FieldName", u"V3"_s}});
        catalogue_.addVariable(u"QX1919"_s, u"SE"_s, table, {{"dt_FieldName", u"V7"_s}});
        catalogue_.addVariable(u"QX1919"_s, u"A;B"_s, table, {{"dt_FieldName", u"V7"_s}});
        catalogue_.add(u"tkey_Parts"_s, {{"id_Part", 2},
                                         {"fi_StudyNo", u"QX1919"_s},
                                         {"dt_SelectionVariable", u"SE"_s},
                                         {"dt_SelectionCriteria", u"2"_s},
                                         {"dt_SeparateAnalysisOnly", true}});
        catalogue_.execute(u"UPDATE tkey_Study SET dt_WeightHH = 'V9' WHERE id_StudyNo = 'QX1919'"_s);
        EXPECT_EQ(catalogue_.open(), 1);
        editor_.open();
        EXPECT_TRUE(editor_.StudyClick(u"QX1919"_s));
        EXPECT_TRUE(editor_.chooseVariable(u"V5"_s));
    }

    TestHome home_;
    ScriptedAsker asker_;
    TestCatalogue catalogue_;
    RequestEditor editor_;
    Instructions commands_{editor_};

    /// What an instruction is about, as the request has it.
    QString request() const {
        const AnalysisRequest& r = editor_.request();
        const bool statistics = r.mode == AnalysisMode::Descriptives;
        const QString flags =
            QString(statistics && r.chkDescGroup ? u"group "_s : u""_s) + (r.chkFlipXtab ? u"flip"_s : u""_s);
        return QStringList{QString::number(static_cast<int>(r.mode)),
                           statistics ? r.dtDesc : QString(),
                           r.groupsByTwo() ? r.dtTable2 + u'.' + r.dtField2 : QString(),
                           QString::number(static_cast<int>(r.optFilter)),
                           r.dbcParts.value,
                           r.txtFilter,
                           r.weightVariable(),
                           QString::number(r.cbValuesInstruct),
                           flags}
            .join(u'|');
    }
    QString kept(const QString& variable = u"V5"_s) {
        return variableRow(u"QX1919"_s, variable, {u"dt_Instruction"_s})->text(u"dt_Instruction"_s);
    }
    void keep(const QString& text, const QString& variable = u"V5"_s) {
        writeVariableFields(u"QX1919"_s, {{variable, {{u"dt_Instruction"_s, text}}}});
        editor_.dbcVariable_Change();
    }
    QStringList keptByAll() {
        QStringList all;
        for (const KeptInstruction& one : readInstructions(u"QX1919"_s))
            all << one.text;
        all.removeDuplicates();
        return all;
    }
    /// What was told since the last call; of a failure its reason too.
    QString told() {
        QStringList texts;
        for (const ui::Box& box : asker_.boxes)
            texts << box.text + (box.details.isEmpty() ? QString() : u'|' + box.details);
        asker_.boxes.clear();
        return texts.join(u'\n');
    }
};

} // namespace

TEST_F(InstructionCommands, ATextGivesTheRequestAndTheRequestTheText) {
    const struct {
        const char16_t* text;
        const char16_t* request;
    } whole[] = {
        {u"Freq;;noFilter;;noWeight;;A;FlipXtab=False;", u"0|||0||||0|"},
        {u"Xtab;V6;FilterUser;V7=1;WeightRE;V3;S;FlipXtab=True;", u"1||QX1919_2.V6|2||V7=1|V3|1|flip"},
        {u"Desc126;;FilterParts;2;WeightUser;V4;A;FlipXtab=False;", u"2|126||1|2|SE = 2|V4|0|"},
        {u"Desc;V7;noFilter;;WeightHH;V9;Z;FlipXtab=False;", u"2||QX1919_1.V7|0|||V9|2|group "},
        {u"Desc0;;noFilter;;noWeight;;G;FlipXtab=True;", u"2|0||0||||3|flip"},
        // Another variable of the study than the study's own has the weight's place.
        {u"Freq;;noFilter;;WeightRE;V9;A;FlipXtab=False;", u"0|||0|||V9|0|"},
        {u"Xtab;V6;FilterUser;V8='Bäcker' AND V7=1;WeightHH;V3;G;", u"1||QX1919_2.V6|2||V8='Bäcker' AND V7=1|V3|3|"},
    };
    for (const auto& one : whole) {
        const QString text = QString::fromUtf16(one.text);
        editor_.change(RequestPart::Mode, [](AnalysisRequest& r) { r.chkFlipXtab = false; });
        EXPECT_EQ(loadInstruction(editor_, Instruction::read(text)), QString());
        EXPECT_EQ(request(), QString::fromUtf16(one.request)) << QString::fromUtf16(one.text).toStdString();
        QString reason;
        std::optional<Instruction> back = instructionOf(editor_.request(), reason);
        ASSERT_TRUE(back) << qPrintable(reason);
        if (!text.contains(u"FlipXtab"_s))
            back->flip.reset();
        EXPECT_EQ(back->text(), text);
    }
    EXPECT_EQ(asker_.boxes.size(), 0U);
}

TEST_F(InstructionCommands, UnknownWordsStandForTheFirstChoiceAndTheReaderGoesOn) {
    editor_.change(RequestPart::Mode, [](AnalysisRequest& r) { r.chkFlipXtab = true; });
    const struct {
        const char16_t* text;
        const char16_t* request;
    } odd[] = {
        {u"Trend;V6;FilterAll;x;WeightXX;V3;Q;FlipXtab=false;", u"0|||0||||0|flip"},
        {u"Fehler", u"0|||0||||0|flip"},
        {u"Des;;FilterUser", u"0|||2||||0|flip"},
        {u"freq;;noFilter;;WeightUser;V3;s;", u"0|||0|||V3|0|flip"},
        {u"Desc6;V7", u"2|6|QX1919_1.V7|0||||0|group flip"},
        {u"Frequency;V99;noFilter;V7=1;noWeight;V99;S;FlipXtab=False;more;fields;", u"0|||0||||1|"},
        // A filter with the sign that ends a field moves what stands behind it.
        {u"Freq;;FilterUser;V8='a;b';WeightRE;V3;S;FlipXtab=True;", u"0|||2||V8='a||0|"},
    };
    for (const auto& one : odd) {
        EXPECT_EQ(loadInstruction(editor_, Instruction::read(QString::fromUtf16(one.text))), QString());
        EXPECT_EQ(request(), QString::fromUtf16(one.request)) << QString::fromUtf16(one.text).toStdString();
    }
}

TEST_F(InstructionCommands, WhatIsNotInTheStudyLoadsNothingAtAll) {
    loadInstruction(editor_, Instruction::read(u"Desc30;V7;FilterUser;V7=1;WeightRE;V3;Z;FlipXtab=True;"_s));
    const QString before = request();
    for (const QString& text :
         {u"Xtab;V99;noFilter;;noWeight;;S;FlipXtab=False;"_s, u"Xtab;;noFilter;;noWeight;;S;FlipXtab=False;"_s,
          u"Desc2;V99;noFilter;;noWeight;;S;FlipXtab=False;"_s, u"Freq;;FilterParts;9;noWeight;;S;FlipXtab=False;"_s,
          u"Freq;;FilterParts;;noWeight;;S;FlipXtab=False;"_s, u"Freq;;noFilter;;WeightRE;V99;S;FlipXtab=False;"_s,
          u"Freq;;noFilter;;WeightUser;;S;FlipXtab=False;"_s, u"Xtab;V6;FilterParts;9;WeightHH;V99;S;"_s}) {
        keep(text);
        EXPECT_FALSE(commands_.cmdInstructionLoad());
        EXPECT_TRUE(told().startsWith(u"Fehler|"_s));
        EXPECT_EQ(request(), before) << text.toStdString();
    }
}

TEST_F(InstructionCommands, AnInstructionIsSavedAfterItsQuestionAndCanBeLoadedAndDeleted) {
    EXPECT_FALSE(editor_.kept().instruction);
    EXPECT_FALSE(commands_.cmdInstructionLoad());
    EXPECT_FALSE(commands_.cmdInstructionDelete());
    EXPECT_EQ(told(), u"Fehler|Für diese Variable ist keine Anweisung gespeichert.\n"
                      u"Fehler|Für diese Variable ist keine Anweisung gespeichert."_s);

    EXPECT_TRUE(commands_.cmdInstructionSave()) << "nobody is asked where there was none";
    EXPECT_EQ(kept(), u"Freq;;noFilter;;noWeight;;A;FlipXtab=False;"_s);
    EXPECT_TRUE(editor_.kept().instruction);
    editor_.chooseMode(AnalysisMode::Descriptives);
    asker_.answer(Cancel).answer(Ok);
    EXPECT_FALSE(commands_.cmdInstructionSave());
    EXPECT_EQ(kept(), u"Freq;;noFilter;;noWeight;;A;FlipXtab=False;"_s);
    EXPECT_EQ(asker_.boxes.back().defaultButton, Cancel);
    EXPECT_TRUE(commands_.cmdInstructionSave());
    EXPECT_EQ(kept(), u"Desc;;noFilter;;noWeight;;A;FlipXtab=False;"_s);
    EXPECT_EQ(told(), u"Möchten Sie die gespeicherte Anweisung überschreiben?\n"
                      u"Möchten Sie die gespeicherte Anweisung überschreiben?"_s);

    // The statistics that it names hold, with the options' digits.
    keep(u"Desc30;;noFilter;;noWeight;;A;"_s);
    EXPECT_TRUE(commands_.cmdInstructionLoad());
    EXPECT_EQ(editor_.request().dtDesc, u"30"_s);
    const DescriptivesChoice choice = DescriptivesChoice::of(editor_.request(), gOptions);
    EXPECT_EQ(choice.dtDesc(), u"30"_s);
    EXPECT_EQ(choice.dtDescDigits(), DescriptivesChoice::defaults(gOptions).dtDescDigits());

    asker_.answer(Cancel).answer(Ok);
    EXPECT_FALSE(commands_.cmdInstructionDelete());
    EXPECT_FALSE(kept().isEmpty());
    EXPECT_TRUE(commands_.cmdInstructionDelete());
    EXPECT_EQ(kept(), QString());
    EXPECT_FALSE(editor_.kept().instruction);
    EXPECT_EQ(told(), u"Möchten Sie die gespeicherte Anweisung löschen?\n"
                      u"Möchten Sie die gespeicherte Anweisung löschen?"_s);
    EXPECT_TRUE(variableRow(u"QX1919"_s, u"V5"_s, {u"dt_Instruction"_s})->value(u"dt_Instruction"_s).isNull());
}

TEST_F(InstructionCommands, ARequestThatIsNotCompleteIsNotSaved) {
    const auto fails = [this](const QString& reason) {
        EXPECT_FALSE(commands_.cmdInstructionSave());
        EXPECT_EQ(told(), u"Fehler|"_s + reason);
        EXPECT_EQ(kept(), QString());
    };
    editor_.chooseMode(AnalysisMode::Comparison);
    fails(u"Für einen Vergleich gibt es keine Anweisung."_s);
    editor_.chooseMode(AnalysisMode::Crosstab);
    fails(u"Bitte eine zweite Variable auswählen"_s);
    editor_.chooseVariable2(u"A;B"_s);
    fails(u"Eine Anweisung kann kein Semikolon enthalten: A;B"_s);
    editor_.chooseMode(AnalysisMode::Frequency);
    editor_.chooseFilterText(QString());
    fails(u"Der Filter ist leer."_s);
    editor_.chooseFilterText(u"V8='a;b'"_s);
    fails(u"Eine Anweisung kann kein Semikolon enthalten: V8='a;b'"_s);
    editor_.chooseFilter(FilterKind::noFilter);
    editor_.chooseUserWeight();
    fails(u"Gewichtungsvariable auswählen"_s);
    RequestEditor fresh;
    fresh.open();
    EXPECT_FALSE(Instructions(fresh).cmdInstructionSave());
    EXPECT_FALSE(Instructions(fresh).cmdInstructionSaveForAll());
    EXPECT_FALSE(Instructions(fresh).cmdInstructionDeleteForAll());
    EXPECT_FALSE(Instructions(fresh).cmdInstructionRunTableForAll(estimatedTextWidth, {}));
    EXPECT_EQ(told(), u"Fehler|Bitte eine Variable auswählen\nFehler|Bitte eine Studie auswählen\n"
                      u"Fehler|Bitte eine Studie auswählen\nFehler|Bitte eine Studie auswählen"_s);
}

TEST_F(InstructionCommands, OneTextIsSavedWithAllVariablesOfTheStudyAndTakenFromAll) {
    RequestEditor none;
    none.open();
    none.StudyClick(u"QX1919"_s);
    none.chooseMode(AnalysisMode::Crosstab);
    none.chooseVariable2(u"V7"_s);
    none.change(RequestPart::Mode, [](AnalysisRequest& r) { r.chkFlipXtab = true; });
    Instructions ofAll(none);
    keep(u"Freq;;noFilter;;noWeight;;A;FlipXtab=False;"_s);
    asker_.answer(Cancel).answer(Ok).answer(Cancel);
    EXPECT_FALSE(ofAll.cmdInstructionSaveForAll());
    EXPECT_EQ(keptByAll().size(), 2);
    EXPECT_TRUE(ofAll.cmdInstructionSaveForAll()) << "no variable need be chosen";
    EXPECT_EQ(keptByAll(), QStringList{u"Xtab;V7;noFilter;;noWeight;;A;"_s});
    EXPECT_EQ(variableRow(u"QX2020"_s, u"V5"_s, {u"dt_Instruction"_s})->text(u"dt_Instruction"_s), QString());
    EXPECT_FALSE(ofAll.cmdInstructionDeleteForAll());
    EXPECT_EQ(told(), u"Möchten Sie für alle Variablen dieser Studie die gewählte Anweisung speichern (und vorhandene "
                      u"überschreiben)?\n"
                      u"Möchten Sie für alle Variablen dieser Studie die gewählte Anweisung speichern (und vorhandene "
                      u"überschreiben)?\n"
                      u"Möchten Sie für alle Variablen dieser Studie die gespeicherten Anweisungen löschen?"_s);
    {
        // A disk that is full takes none of them.
        const FullDisk full(QFileInfo(catalogue_.path()).size());
        none.chooseFilterText(QString(200'000, u'x'));
        asker_.answer(Ok);
        EXPECT_FALSE(ofAll.cmdInstructionSaveForAll());
        EXPECT_EQ(asker_.boxes.back().icon, ui::Icon::Critical);
    }
    EXPECT_EQ(keptByAll(), QStringList{u"Xtab;V7;noFilter;;noWeight;;A;"_s});
    asker_.answer(Ok);
    EXPECT_TRUE(ofAll.cmdInstructionDeleteForAll());
    EXPECT_EQ(keptByAll(), QStringList{QString()});
}

TEST_F(InstructionCommands, AWeightThatAnInstructionNamesOutlivesAnotherWriter) {
    keep(u"Freq;;noFilter;;WeightRE;V9;A;"_s);
    ASSERT_TRUE(commands_.cmdInstructionLoad());
    catalogue_.execute(u"UPDATE tkey_Variable SET dt_VarLabel = 'x' WHERE id_VarName = 'V7'"_s);
    ASSERT_TRUE(editor_.refresh());
    EXPECT_EQ(editor_.request().weightVariable(), u"V9"_s);
    catalogue_.execute(u"DELETE FROM tkey_Variable WHERE id_VarName = 'V9'"_s);
    ASSERT_TRUE(editor_.refresh());
    EXPECT_EQ(editor_.request().weightVariable(), QString()) << "the study's own weight must not take its place";
    ASSERT_TRUE(editor_.StudyClick(u"QX1919"_s));
    EXPECT_EQ(editor_.request().dt_WeightRE, u"V3"_s);
}

TEST_F(InstructionCommands, ACommandNamesTheWeightThatAnInstructionHasInTheStudysPlace) {
    AnalysisModel model;
    model.open();
    ASSERT_TRUE(model.edit().StudyClick(u"QX1919"_s) && model.edit().chooseVariable(u"V5"_s));
    for (const auto& [weight, words] : {std::pair(u"V9"_s, u"--weight=V9"_s), {u"V3"_s, u"--weight=re"_s}}) {
        loadInstruction(model.edit(), Instruction::read(u"Freq;;noFilter;;WeightRE;%1;A;"_s.arg(weight)));
        ASSERT_EQ(model.changeTab(1), RunOutcome::Computed);
        EXPECT_TRUE(model.command()->contains(words)) << model.command()->toStdString();
    }
}
