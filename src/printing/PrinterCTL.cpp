#include "printing/PrinterCTL.h"

void PrinterCTL::Preview() {
    if (show)
        show(*this);
}

void PrinterCTL::PrintReport() {
    if (print)
        print(*this);
}
