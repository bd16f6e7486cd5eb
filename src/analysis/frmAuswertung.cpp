#include "analysis/frmAuswertung.h"

#include "widgets/Desktop.h"

using namespace Qt::StringLiterals;

frmAuswertung* frmAuswertung::openFrom(const frmExplorer*) {
    auto* window = new frmAuswertung;
    desktop().adopt(*window);
    return window;
}

frmAuswertung::frmAuswertung() : Form(*this, u"frmAuswertung"_s) {
    model_.open();
}

frmAuswertung::~frmAuswertung() = default;
void frmAuswertung::copy() {}
void frmAuswertung::optionsApplied() {}
void frmAuswertung::refreshTitles() {}
