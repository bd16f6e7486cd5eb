#include "config/Options.h"

namespace {

constexpr auto yes = u"1";
constexpr auto no = u"0";
constexpr auto iniYes = u"True";
constexpr auto iniNo = u"False";

} // namespace

// The two sources keep their own defaults on purpose; four switches and one font differ between them.
const std::vector<OptionDescriptor>& optionDescriptors() {
    using O = Options;
    static const std::vector<OptionDescriptor> table = {
        {u"EditStudiesMode", &O::EditStudiesMode, no, iniNo, true},
        {u"DatabaseName", &O::DatabaseName, u"", u"", true},
        {u"DatabasePath", &O::DatabasePath, u"", u"", true},
        {u"DataPath", &O::DataPath, u"", u"", true},
        {u"QuestionnairePath", &O::QuestionnairePath, u"", u"", true},
        {u"SortByPosition", &O::SortByPosition, yes, iniYes, true},
        {u"TakeSameVarWindow", &O::TakeSameVarWindow, no, iniYes, true},
        {u"AlignSBVTop", &O::AlignSBVTop, yes, iniYes, true},
        {u"DataOnCD", &O::DataOnCD, no, iniYes, true},
        {u"EnglishLanguage", &O::EnglishLanguage, no, iniYes, true},
        {u"AutomaticVariableColumnWidth", &O::AutomaticVariableColumnWidth, no, iniYes, true},
        {u"SPSSPath", &O::SPSSPath, u"", u"", true},
        {u"SkinPath", &O::SkinPath, u"", u"", true},
        {u"Skin", &O::Skin, yes, iniYes, true},
        {u"ShowCards", &O::ShowCards, yes, iniYes, true},
        {u"FixedFont", &O::FixedFont, u"", u"", true},
        {u"PropFont", &O::PropFont, u"", u"", true},
        {u"AssignListHeight", &O::AssignListHeight, u"850", u"850", true},
        {u"IncludeMissing", &O::IncludeMissing, no, iniNo, true},
        {u"IncludeMissingXTab", &O::IncludeMissingXTab, no, iniNo, true},
        {u"IncludeMissingDesc", &O::IncludeMissingDesc, no, iniNo, true},
        {u"FontName", &O::FontName, u"ARIAL", u"", true},
        {u"TakeAbsolutValues", &O::TakeAbsolutValues, yes, iniYes, true},
        {u"GraphColor", &O::GraphColor, yes, iniYes, true},
        {u"Landscape", &O::Landscape, yes, iniYes, true},
        {u"TrendGraphLine", &O::TrendGraphLine, yes, iniYes, true},
        {u"HeaderStudy", &O::HeaderStudy, yes, iniYes, true},
        {u"HeaderVar", &O::HeaderVar, yes, iniYes, true},
        {u"HeaderYear", &O::HeaderYear, yes, iniYes, true},
        {u"HeaderGroup", &O::HeaderGroup, yes, iniYes, true},
        {u"HeaderValFirst", &O::HeaderValFirst, yes, iniYes, true},
        {u"HeaderValAddVar", &O::HeaderValAddVar, yes, iniYes, true},
        {u"MaxItems", &O::MaxItems, u"20", u"20", true},
        {u"IncludeMissingInPercentXTab", &O::IncludeMissingInPercentXTab, no, iniNo, true},
        {u"IncludeNinXTab", &O::IncludeNinXTab, no, iniNo, true},
        {u"IncludeNinXTabPercentNFirst", &O::IncludeNinXTabPercentNFirst, no, iniNo, true},
        {u"NoColumnLabels", &O::NoColumnLabels, no, iniNo, true},
        {u"NoRowLabels", &O::NoRowLabels, no, iniNo, true},
        {u"IncludeNinXTabPercent", &O::IncludeNinXTabPercent, no, iniNo, true},
        {u"ShowValidSums", &O::ShowValidSums, yes, iniYes, true},
        {u"StartItem", &O::StartItem, u"1", u"1", true},
        {u"ComparisonWeight", &O::ComparisonWeight, u"0", u"0", true},
        {u"HeaderAddWeight", &O::HeaderAddWeight, yes, iniYes, true},
        {u"HeaderAddFilter", &O::HeaderAddFilter, yes, iniYes, true},
        {u"CumulatedPercent", &O::CumulatedPercent, yes, iniYes, true},
        {u"AutoColWidth", &O::AutoColWidth, yes, iniYes, true},
        {u"SeparateValidCases", &O::SeparateValidCases, yes, iniYes, true},
        {u"ShowPercentSign", &O::ShowPercentSign, yes, iniYes, true},
        {u"CommaInPercent", &O::CommaInPercent, yes, iniYes, true},
        {u"PrintPageCount", &O::PrintPageCount, u"99999", u"99999", true},
        {u"PrintStartPage", &O::PrintStartPage, u"1", u"1", true},
        {u"PrintStartPageNumber", &O::PrintStartPageNumber, u"1", u"1", true},
        {u"PrintMaxLevels", &O::PrintMaxLevels, u"0", u"0", true},
        {u"PrintDatePosition", &O::PrintDatePosition, u"topmiddle", u"", true},
        {u"PrintPageNumberPosition", &O::PrintPageNumberPosition, u"botmiddle", u"", true},
        {u"ReportIncludeQuestionText", &O::ReportIncludeQuestionText, yes, iniYes, true},
        {u"ReportIncludeTables", &O::ReportIncludeTables, yes, iniYes, true},
        {u"ReportIncludeGraphs", &O::ReportIncludeGraphs, yes, iniYes, true},
        {u"ReportIncludeShowCards", &O::ReportIncludeShowCards, yes, iniYes, true},
        {u"ZoomFactor", &O::ZoomFactor, u"100", u"100", true},
        {u"FontSize", &O::FontSize, u"11", u"11", true},
        {u"AskMissing", &O::AskMissing, yes, iniYes, true},
        {u"Descriptives", &O::Descriptives, u"126", u"", false},
        {u"DescriptivesDigits", &O::DescriptivesDigits, u"2;2;2;2;2;2;2;2;2;2;2;2;2;", u"", false},
    };
    return table;
}
