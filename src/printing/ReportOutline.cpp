#include "printing/ReportOutline.h"

#include <algorithm>

int ReportOutline::variables() const {
    return static_cast<int>(std::ranges::count(entries, ReportEntry::Kind::Variable, &ReportEntry::kind));
}
