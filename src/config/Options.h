#pragma once

#include <QString>
#include <QStringList>
#include <variant>
#include <vector>

/// The user's settings, one field a key. The defaults written here are those of the registry.
struct Options {
    bool EditStudiesMode = false;
    QString DatabaseName, DatabasePath, DataPath, QuestionnairePath;
    bool SortByPosition = true;
    bool TakeSameVarWindow = false;
    bool AlignSBVTop = true;
    bool DataOnCD = false;
    bool EnglishLanguage = false;
    bool AutomaticVariableColumnWidth = false;
    QString SPSSPath, SkinPath;
    bool Skin = true;
    bool ShowCards = true;
    QString FixedFont = QStringLiteral("Courier New"), PropFont = QStringLiteral("Arial");
    int AssignListHeight = 850;
    bool IncludeMissing = false;
    bool IncludeMissingXTab = false;
    bool IncludeMissingDesc = false;
    QString FontName = QStringLiteral("ARIAL");
    bool TakeAbsolutValues = true;
    bool GraphColor = true;
    bool Landscape = true;
    bool TrendGraphLine = true;
    bool HeaderStudy = true;
    bool HeaderVar = true;
    bool HeaderYear = true;
    bool HeaderGroup = true;
    bool HeaderValFirst = true;
    bool HeaderValAddVar = true;
    int MaxItems = 20;
    bool IncludeMissingInPercentXTab = false;
    bool IncludeNinXTab = false;
    bool IncludeNinXTabPercentNFirst = false;
    bool NoColumnLabels = false;
    bool NoRowLabels = false;
    bool IncludeNinXTabPercent = false;
    bool ShowValidSums = true;
    int StartItem = 1;
    int ComparisonWeight = 0;
    bool HeaderAddWeight = true;
    bool HeaderAddFilter = true;
    bool CumulatedPercent = true;
    bool AutoColWidth = true;
    bool SeparateValidCases = true;
    bool ShowPercentSign = true;
    bool CommaInPercent = true;
    int PrintPageCount = 99999;
    int PrintStartPage = 1;
    int PrintStartPageNumber = 1;
    int PrintMaxLevels = 0;
    QString PrintDatePosition = QStringLiteral("topmiddle"), PrintPageNumberPosition = QStringLiteral("botmiddle");
    bool ReportIncludeQuestionText = true;
    bool ReportIncludeTables = true;
    bool ReportIncludeGraphs = true;
    bool ReportIncludeShowCards = true;
    int ZoomFactor = 100;
    int FontSize = 11;
    bool AskMissing = true;
    int Descriptives = 126;
    QString DescriptivesDigits = QStringLiteral("2;2;2;2;2;2;2;2;2;2;2;2;2;");
};
extern Options gOptions;

/// One option: its key, the field that holds it, and its two defaults in text form.
struct OptionDescriptor {
    using Member = std::variant<bool Options::*, int Options::*, QString Options::*>;
    const char16_t* key;
    Member member;
    const char16_t* registryDefault;
    const char16_t* iniDefault;
    bool inIniFile;
};

/// All options in the order of reading from the registry.
const std::vector<OptionDescriptor>& optionDescriptors();
/// Same, by key (without regard to case); nullptr if there is none.
const OptionDescriptor* findOption(const QString& key);

/// The text form of an option in its place, and back. A boolean is "1" or "0" in the registry, "True" or "False" in an
/// ini file.
QString optionText(const Options& options, const OptionDescriptor& option, bool iniForm);
/// Sets an option from text for one run. @throws dao::Error 13 for a text that does not convert, 6 beyond 32 bits
void convertOption(Options& options, const OptionDescriptor& option, const QString& text);
/// The same; false if the text does not convert.
bool setOptionFromText(Options& options, const OptionDescriptor& option, const QString& text);

void OptionsFromRegistry();
void OptionsFromIniFile(const QString& file);
void OptionsToIniFile(const QString& file);

bool CBool_me(const QString& value, bool byDefault);
qint32 CLng_me(const QString& value, qint32 byDefault);
