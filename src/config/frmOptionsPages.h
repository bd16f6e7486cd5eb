#pragma once

class QTabWidget;
class QWidget;

/// The tabs of the options dialog with all their controls, in the designed German.
QTabWidget* makeOptionPages(QWidget* parent);
