#include "config/Options.h"

#include <algorithm>
#include <iterator>

namespace {

using Form = OptionControl::Form;
using enum IniPlace;

// The forms of control that optionRows.h names, each with what it takes.

constexpr OptionControl noControl() {
    return {};
}
constexpr OptionControl check(int place, QStringView name, QStringView caption) {
    return {.form = Form::CheckBox, .place = place, .name = name, .caption = caption};
}
/// What a box keeps when the one above it is cleared.
enum class Mark { Kept, Lost };
constexpr OptionControl dependentCheck(int place, bool Options::*governing, Mark mark, QStringView name,
                                       QStringView caption) {
    OptionControl control = check(place, name, caption);
    control.governing = governing;
    control.losesMark = mark == Mark::Lost;
    return control;
}
constexpr OptionControl text(int place, QStringView name, QStringView caption) {
    return {.form = Form::Text, .place = place, .name = name, .caption = caption};
}
constexpr OptionControl number(int place, QStringView name, QStringView caption, int least, int most) {
    return {.form = Form::Number, .place = place, .name = name, .caption = caption, .least = least, .most = most};
}
constexpr OptionControl path(int place, QStringView name, QStringView caption, QStringView tip) {
    return {.form = Form::Path, .place = place, .name = name, .caption = caption, .tip = tip};
}
constexpr OptionControl fontList(int place, QStringView name, QStringView caption) {
    return {.form = Form::FontList, .place = place, .name = name, .caption = caption};
}
constexpr OptionControl sizeList(int place, QStringView name, QStringView caption) {
    return {.form = Form::SizeList, .place = place, .name = name, .caption = caption};
}
constexpr OptionControl choices(int place, QStringView name) {
    return {.form = Form::Choices, .place = place, .name = name};
}
constexpr OptionControl position(int place, QStringView name, QStringView caption, QStringView otherwise) {
    return {.form = Form::Position, .place = place, .name = name, .caption = caption, .otherwise = otherwise};
}

constexpr OptionDescriptor optionTable[] = {
#define OPTION(Type, key, registryDefault, iniDefault, iniPlace, control) {u"" #key, &Options::key, iniPlace, control},
#include "config/optionRows.h"
};

/// A control of its form can show what the field holds.
constexpr bool fits(const OptionDescriptor& option) {
    switch (option.control.form) {
    case Form::None:
        return true;
    case Form::CheckBox:
        return std::holds_alternative<bool Options::*>(option.member);
    case Form::Number:
    case Form::SizeList:
    case Form::Choices:
        return std::holds_alternative<int Options::*>(option.member);
    default:
        return std::holds_alternative<QString Options::*>(option.member);
    }
}
static_assert(std::all_of(std::begin(optionTable), std::end(optionTable), fits),
              "an option has a control of another type");

constexpr bool placesAreTheirOwn() {
    for (auto one = std::begin(optionTable); one != std::end(optionTable); ++one)
        for (auto other = std::begin(optionTable); other != one; ++other)
            if (one->control.place != 0 && one->control.place == other->control.place)
                return false;
    return true;
}
static_assert(placesAreTheirOwn(), "two options are written at the same place");

Options withIniDefaults() {
    Options options;
#define OPTION(Type, key, registryDefault, iniDefault, iniPlace, control) options.key = optionValue<Type>(iniDefault);
#include "config/optionRows.h"
    return options;
}

} // namespace

std::span<const OptionDescriptor> optionDescriptors() {
    return optionTable;
}

const OptionDescriptor* findOption(QStringView key) {
    const auto found = std::ranges::find_if(
        optionTable, [&](const OptionDescriptor& option) { return option.key.compare(key, Qt::CaseInsensitive) == 0; });
    return found == std::end(optionTable) ? nullptr : found;
}

const OptionDescriptor& optionOf(const OptionDescriptor::Member& member) {
    return *std::ranges::find(optionTable, member, &OptionDescriptor::member);
}

const Options& iniDefaults() {
    static const Options options = withIniDefaults();
    return options;
}
