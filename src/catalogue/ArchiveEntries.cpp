#include "catalogue/ArchiveEntries.h"

#include "catalogue/CatalogueImport.h"
#include "catalogue/importTexts.h"
#include "catalogue/schema.h"

#include <QSet>

#include <utility>

using namespace Qt::StringLiterals;

namespace archive {

namespace {

/// Absent and empty texts are Null.
dao::Value valueOf(const std::optional<QString>& text) {
    return text && !text->isEmpty() ? dao::Value(*text) : dao::Value();
}

/// Sets both fields of a text that is given; what is not given stays.
void setTexts(dao::Recordset& row, const QString& field, const QString& englishField, const Text& text) {
    if (text.original)
        row.setValue(field, valueOf(text.original));
    if (text.english)
        row.setValue(englishField, valueOf(text.english));
}

QString viewOption(qsizetype number, const QString& suffix) {
    return u"frmExplorer%1%2"_s.arg(number).arg(suffix);
}

/// Texts by the name of their variable, case-folded.
QHash<QString, const VariableTexts*> byName(const std::vector<VariableTexts>& all) {
    QHash<QString, const VariableTexts*> texts;
    for (const VariableTexts& variable : all)
        texts.insert(variable.name.toCaseFolded(), &variable);
    return texts;
}

} // namespace

EntryWriter::EntryWriter(const Description& description, dao::DatabasePtr catalogue, BuildReport& report)
    : description_(description), catalogue_(std::move(catalogue)), report_(report),
      common_(byName(description.variables)) {}

void EntryWriter::writeFrame() {
    QStringList studyViews, categoryViews;
    for (const View& view : description_.views)
        (view.isStudyView ? studyViews : categoryViews) << view.table;
    schema::createCatalogueTables(*catalogue_, studyViews, categoryViews);
    writeOptions();

    const dao::RecordsetPtr database = catalogue_->OpenRecordset(u"tkey_Database"_s);
    database->AddNew();
    setTexts(*database, u"dt_DatabaseTitle"_s, u"dt_EnDatabaseTitle"_s, description_.title);
    setTexts(*database, u"dt_DatabaseDescription"_s, u"dt_EnDatabaseDescription"_s, description_.description);
    database->Update();

    const dao::RecordsetPtr groups = catalogue_->OpenRecordset(u"tkey_VarGroups"_s);
    for (const VariableGroup& group : description_.groups) {
        const int id = static_cast<int>(groupIds_.size()) + 1;
        groupIds_.insert(group.key.toCaseFolded(), id);
        groups->AddNew();
        groups->setValue(u"id_VarGroup"_s, id);
        setTexts(*groups, u"dt_VarGroupName"_s, u"dt_VarGroupNameEn"_s, group.name);
        groups->Update();
    }
}

void EntryWriter::writeOptions() {
    std::vector<std::pair<QString, QString>> rows = description_.options;
    rows.emplace_back(u"NumberOfFrmExplorers"_s, QString::number(description_.views.size()));
    qsizetype number = 0;
    for (const View& view : description_.views) {
        ++number;
        rows.emplace_back(viewOption(number, u"Name"_s), view.name.original.value_or(QString()));
        rows.emplace_back(viewOption(number, u"NameEnglish"_s), view.name.english.value_or(QString()));
        rows.emplace_back(viewOption(number, u"Table"_s), view.table);
        rows.emplace_back(viewOption(number, u"Type"_s), view.isStudyView ? u"1"_s : QString());
        rows.emplace_back(viewOption(number, u"DescName"_s), view.descriptionsName.original.value_or(QString()));
        rows.emplace_back(viewOption(number, u"DescNameEnglish"_s), view.descriptionsName.english.value_or(QString()));
        rows.emplace_back(viewOption(number, u"CompAnalysis"_s), view.comparison ? u"1"_s : QString());
    }
    const dao::RecordsetPtr options = catalogue_->OpenRecordset(u"tsys_Options"_s);
    for (const auto& [name, value] : rows) {
        options->AddNew();
        options->setValue(u"dt_OptionName"_s, name);
        options->setValue(u"dt_OptionValue"_s, valueOf(value));
        options->Update();
    }
}

void EntryWriter::writeGroups(const View& view) {
    const dao::RecordsetPtr rows = catalogue_->OpenRecordset(schema::entryTableName(view.table));
    for (const Study& group : view.studies) {
        if (!group.isGroup)
            continue;
        rows->AddNew();
        rows->setValue(u"id_StudyNo"_s, group.number);
        rows->setValue(u"fid"_s, group.parent);
        rows->setValue(u"Order"_s, group.order);
        rows->setValue(u"dt_IsGroup"_s, true);
        setTexts(*rows, u"dt_StudyTitle"_s, u"dt_EnStudyTitle"_s, group.title);
        setTexts(*rows, u"dt_StudyDescription"_s, u"dt_EnStudyDescription"_s, group.description);
        rows->Update();
    }
}

void EntryWriter::completeStudy(const View& view, const Study& study) {
    const dao::RecordsetPtr row = catalogue_->OpenRecordset(
        u"SELECT * FROM %1 WHERE id_StudyNo = '%2';"_s.arg(schema::entryTableName(view.table), study.number));
    row->Edit();
    row->setValue(u"Order"_s, study.order);
    setTexts(*row, u"dt_StudyTitle"_s, u"dt_EnStudyTitle"_s, study.title);
    if (study.description.original && !row->text(u"dt_StudyDescription"_s).isEmpty())
        report_.facts
            << said(u"%1: Nicht übernommen: Anmerkungen der Datei (die Beschreibung des Archivs hat Vorrang)"_s,
                    u"%1: Not taken over: the file's notes (the archive's description takes precedence)"_s)
                   .arg(study.number);
    setTexts(*row, u"dt_StudyDescription"_s, u"dt_EnStudyDescription"_s, study.description);
    row->setValue(u"dt_query"_s, valueOf(study.query));
    row->Update();

    studies_.push_back(variablesOf(study.number));
    for (const VariableTexts& texts : study.variables)
        if (!studies_.back().contains(texts.name))
            throw ImportError(description_.at(texts.place, said(u"die Studie '%1' hat keine Variable '%2'"_s,
                                                                u"the study '%1' has no variable '%2'"_s)
                                                               .arg(study.number, texts.name)));
    writeVariableTexts(study);
    writeParts(study, studies_.back());
}

StudyVariables EntryWriter::variablesOf(const QString& study) const {
    StudyVariables result{study, {}, {}};
    const dao::RecordsetPtr rows = catalogue_->OpenRecordset(
        u"SELECT id_VarName, dt_TableName FROM tkey_Variable WHERE fi_StudyNo = '%1' ORDER BY dt_Position;"_s.arg(
            study),
        dao::dbOpenSnapshot);
    for (; !rows->Eof(); rows->MoveNext()) {
        result.names << rows->text(u"id_VarName"_s);
        const QString table = rows->text(u"dt_TableName"_s);
        if (!result.tables.contains(table))
            result.tables << table;
    }
    return result;
}

void EntryWriter::writeVariableTexts(const Study& study) {
    const QHash<QString, const VariableTexts*> own = byName(study.variables);
    const dao::RecordsetPtr row =
        catalogue_->OpenRecordset(u"SELECT * FROM tkey_Variable WHERE fi_StudyNo = '%1';"_s.arg(study.number));
    for (; !row->Eof(); row->MoveNext()) {
        const QString name = row->text(u"id_VarName"_s).toCaseFolded();
        // What the study itself says of a variable comes last and holds.
        for (const VariableTexts* texts : {common_.value(name), own.value(name)}) {
            if (!texts)
                continue;
            row->Edit();
            setTexts(*row, u"dt_VarLabel"_s, u"dt_EnVarLabel"_s, texts->label);
            setTexts(*row, u"dt_QuestionText"_s, u"dt_EnQuestionText"_s, texts->question);
            setTexts(*row, u"dt_FileNameShowCard"_s, u"dt_FileNameEnShowCard"_s, texts->showCard);
            if (!texts->group.isEmpty())
                row->setValue(u"dt_VarGroup"_s, groupIds_.value(texts->group.toCaseFolded()));
            if (!texts->instruction.isEmpty())
                row->setValue(u"dt_Instruction"_s, texts->instruction);
            row->Update();
        }
    }
}

void EntryWriter::writeParts(const Study& study, const StudyVariables& variables) {
    const dao::RecordsetPtr rows = catalogue_->OpenRecordset(u"tkey_Parts"_s);
    for (const Part& part : study.parts) {
        if (!part.variable.isEmpty() && !variables.contains(part.variable))
            throw ImportError(
                description_.at(part.place + u".variable"_s, said(u"die Studie '%1' hat keine Variable '%2'"_s,
                                                                  u"the study '%1' has no variable '%2'"_s)
                                                                 .arg(study.number, part.variable)));
        rows->AddNew();
        rows->setValue(u"fi_StudyNo"_s, study.number);
        rows->setValue(u"dt_PartNo"_s, part.number);
        setTexts(*rows, u"dt_PartName"_s, u"dt_EnPartName"_s, part.name);
        rows->setValue(u"dt_SelectionVariable"_s, valueOf(part.variable));
        rows->setValue(u"dt_SelectionCriteria"_s, valueOf(part.criterion));
        rows->setValue(u"dt_SeparateAnalysisOnly"_s, part.separateAnalysis);
        rows->Update();
    }
}

void EntryWriter::writeCategories(const View& view) {
    const std::unique_ptr<dao::Appender> entries =
        catalogue_->openAppender(schema::entryTableName(view.table),
                                 {u"id"_s, u"fid"_s, u"Order"_s, u"dt_IndicatorName"_s, u"dt_EnIndicatorName"_s,
                                  u"dt_IndicatorDescription"_s, u"dt_EnIndicatorDescription"_s});
    const std::unique_ptr<dao::Appender> relations = catalogue_->openAppender(
        schema::assignmentTableName(view.table), {u"fid"_s, u"fi_StudyNo"_s, u"fi_VariableNo"_s});
    for (const Category& category : view.categories) {
        entries->setNumber(0, category.id);
        entries->setNumber(1, category.parent);
        entries->setNumber(2, category.order);
        int column = 3;
        for (const auto& text : {category.name.original, category.name.english, category.description.original,
                                 category.description.english}) {
            if (text && !text->isEmpty())
                entries->setText(column, *text);
            ++column;
        }
        entries->appendRow();
        ++report_.categories;

        // A variable stands in a category once, however many patterns name it.
        QSet<std::pair<QString, QString>> taken;
        for (qsizetype i = 0; i < category.variablePlaces.size(); ++i) {
            for (const auto& variable : matching(category, i)) {
                if (taken.contains(variable))
                    continue;
                taken.insert(variable);
                relations->setNumber(0, category.id);
                relations->setText(1, variable.first);
                relations->setText(2, variable.second);
                relations->appendRow();
                ++report_.assignments;
            }
        }
    }
}

std::vector<std::pair<QString, QString>> EntryWriter::matching(const Category& category, qsizetype pattern) const {
    const auto& [studyPattern, namePattern] = category.variables[static_cast<std::size_t>(pattern)];
    std::vector<std::pair<QString, QString>> found;
    for (const StudyVariables& study : studies_)
        if (dao::matchesPattern(study.study, studyPattern))
            for (const QString& name : study.names)
                if (dao::matchesPattern(name, namePattern))
                    found.emplace_back(study.study, name);
    if (found.empty())
        throw ImportError(description_.at(category.variablePlaces[pattern],
                                          said(u"keine Variable passt zu '%1:%2'"_s, u"no variable matches '%1:%2'"_s)
                                              .arg(studyPattern, namePattern)));
    return found;
}

void EntryWriter::checkVariableTexts() const {
    for (const VariableTexts& texts : description_.variables) {
        bool found = false;
        for (const StudyVariables& study : studies_)
            found = found || study.contains(texts.name);
        if (!found)
            throw ImportError(description_.at(
                texts.place,
                said(u"keine Studie hat eine Variable '%1'"_s, u"no study has a variable '%1'"_s).arg(texts.name)));
    }
}

} // namespace archive
