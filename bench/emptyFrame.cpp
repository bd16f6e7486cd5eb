// The least program with a frame for child windows: what a start costs before any code of ours. Prints a line once it
// is painted, and the memory that it has then.

#include "PaintWatch.h"
#include "residentMemory.h"

#include <QApplication>
#include <QMainWindow>
#include <QMdiArea>
#include <cstdio>

int main(int argc, char** argv) {
    QApplication application(argc, argv);
    QMainWindow window;
    auto* area = new QMdiArea(&window);
    window.setCentralWidget(area);
    PaintWatch watch(area->viewport());
    window.show();
    watch.wait();
    std::printf("%ld\n", residentMemory());
    std::fflush(stdout);
    std::_Exit(0);
}
