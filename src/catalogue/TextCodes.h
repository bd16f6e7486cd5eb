#pragma once

#include "catalogue/SurveyFile.h"

#include <memory>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

/// Finds whole numbers for the codes of text variables: 1, 2, ... in the order of the catalogue's texts, over all codes
/// that have a label, are declared missing or occur in a case. Codes that differ in nothing but upper and lower case
/// are two, as in the file. Trailing blanks don't count, and a blank text is no code.
///
/// Only the last case completes the order. Codes that the head of the file knows have their numbers before the first
/// one, so that cases need to be written again only where others have come between them; reading the file twice takes
/// less time than changing the rows.
class TextCodes {
public:
    static constexpr int mostCodes = 25'000;         ///< of a variable: the rows that a frequency table has room for
    static constexpr int mostCodesInAll = 1'000'000; ///< so that no file fills the memory
    static constexpr int mostCharacters = 120;       ///< of a code without a label; what is longer is free text

    /// @param file must outlive this
    explicit TextCodes(const SurveyFile& file) : file_(file), variables_(file.variables.size()) {}

    /// True for a text variable whose codes have labels or are declared missing.
    bool hasCodes(int variable) const;
    /// Gives numbers to the codes of a text variable; to be called before the first case.
    /// @param isAskedFor  a variable that cannot be encoded is a failure; any other stays text
    /// @throws EncodeError
    void encode(int variable, bool isAskedFor);

    bool encodes(int variable) const {
        const Variable* one = variables_[static_cast<size_t>(variable)].get();
        return one && one->reason.isEmpty();
    }
    /// The number of a code as things stand, 0 for a blank text. @param text UTF-8 without trailing blanks
    /// @throws EncodeError for a variable that was asked for and has too many codes or free texts
    int sawText(int variable, std::string_view text) {
        if (text.empty())
            return 0;
        const auto& numbers = variables_[static_cast<size_t>(variable)]->numbers;
        const auto found = numbers.find(text);
        return found != numbers.end() ? found->second : addCode(variable, text);
    }
    /// Puts the codes in order. True if a number has changed, or a variable stays text after all, so that cases written
    /// by now must be written again.
    bool settle();

    /// All codes of a variable in the order of their numbers.
    QStringList codes(int variable) const;
    /// Why a variable that has codes stays text, in the user's language; empty if it doesn't.
    QString whyStillText(int variable) const;

private:
    struct Hash {
        using is_transparent = void;
        size_t operator()(std::string_view text) const { return std::hash<std::string_view>()(text); }
    };
    struct Variable {
        bool isAskedFor = false;
        QString reason; ///< for staying text
        std::unordered_map<std::string, int, Hash, std::equal_to<>> numbers;
    };
    const SurveyFile& file_;
    std::vector<std::unique_ptr<Variable>> variables_; ///< null for those that nobody encodes
    int codesInAll_ = 0;
    bool becameText_ = false;

    void addKnown(int variable, const QString& code);
    int addCode(int variable, std::string_view text);
    int insert(int variable, std::string_view text);
    void giveUp(int variable, const QString& reason);
    static bool putInOrder(Variable& variable);
};

/// A code of a text variable as the cases have it: without trailing blanks.
QString textCode(const QString& code);
