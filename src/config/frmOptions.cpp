#include "config/frmOptions.h"

using namespace Qt::StringLiterals;

void frmOptions::showOptions(QWidget* parent) {
    frmOptions(parent).exec();
}

frmOptions::frmOptions(QWidget* parent) : QDialog(parent), Form(*this, u"frmOptions"_s) {}

frmOptions::~frmOptions() = default;
