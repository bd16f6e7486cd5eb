#include "catalogue/TaggedCodes.h"

#include "catalogue/CatalogueImport.h"
#include "catalogue/importTexts.h"

#include <cmath>

using namespace Qt::StringLiterals;

TaggedCodes::TaggedCodes(const SurveyFile& file)
    : shifts_(file.variables.size()), used_(file.variables.size()), occupied_(file.variables.size()) {
    for (size_t i = 0; i < file.variables.size(); ++i) {
        const SurveyVariable& variable = file.variables[i];
        names_.push_back(variable.name);
        if (variable.labelSet < 0 || variable.isText)
            continue;
        // A label gives its code a meaning even where no case has it.
        for (const SurveyLabel& label : file.labelSets[static_cast<size_t>(variable.labelSet)]) {
            if (label.kind == SurveyLabel::Letter && label.letter >= 'a' && label.letter <= 'z')
                sawLetter(static_cast<int>(i), label.letter);
            else if (label.kind == SurveyLabel::Number)
                sawNumber(static_cast<int>(i), label.number);
        }
    }
    settle();
}

void TaggedCodes::occupy(int variable, double value) {
    // The range of shift k reaches from -26 - 1000 k to -1 - 1000 k; what lies between two whole codes is
    // within it too.
    const double shift = std::floor((-value - 1) / 1000);
    if (shift < 0 || shift >= maxShift || -value - 1 - shift * 1000 > 25)
        return;
    auto& taken = occupied_[static_cast<size_t>(variable)];
    if (!taken)
        taken = std::make_unique<std::bitset<maxShift>>();
    taken->set(static_cast<size_t>(shift));
}

std::vector<MissingRange> TaggedCodes::singleCodes(int variable) const {
    std::vector<MissingRange> codes;
    for (char letter = 'z'; letter >= 'a'; --letter)
        if (used_[static_cast<size_t>(variable)].test(static_cast<size_t>(letter - 'a')))
            codes.push_back({code(variable, letter), code(variable, letter)});
    return codes;
}

bool TaggedCodes::settle() {
    bool moved = false;
    for (size_t i = 0; i < shifts_.size(); ++i) {
        if (used_[i].none() || !occupied_[i])
            continue;
        int shift = 0;
        while (shift < maxShift && occupied_[i]->test(static_cast<size_t>(shift)))
            ++shift;
        if (shift == maxShift)
            throw ImportError(said(u"Variable %1: Für die fehlenden Werte .a bis .z ist kein Zahlenbereich frei"_s,
                                   u"Variable %1: There is no free range of numbers for the missing values .a to .z"_s)
                                  .arg(names_[i]));
        moved = moved || shift != shifts_[i];
        shifts_[i] = shift;
    }
    return moved;
}
