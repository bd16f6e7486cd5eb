#include "tables/TableBuilder.h"

int estimatedTextWidth(const QString& text) {
    return static_cast<int>(text.size()) * 80;
}
