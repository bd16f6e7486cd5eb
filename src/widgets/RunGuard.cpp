#include "widgets/RunGuard.h"

bool RunGuard::closeAfterRun(QWidget&) {
    return false;
}
