#pragma once

#include "diagnostics/GestureScope.h"

#include <QDialog>
#include <QHBoxLayout>
#include <QPushButton>

/// The row of OK and Cancel at the foot of a dialog; Enter presses OK. What they do is the dialog's own; each press of
/// them is a gesture, also while the one that has opened the dialog is not over.
template<class Dialog>
QHBoxLayout* okCancelRow(Dialog* dialog) {
    auto* cmdOK = new QPushButton(QStringLiteral("OK"), dialog);
    cmdOK->setObjectName(QStringLiteral("cmdOK"));
    cmdOK->setDefault(true);
    auto* cmdCancel = new QPushButton(QStringLiteral("Abbrechen"), dialog);
    cmdCancel->setObjectName(QStringLiteral("cmdCancel"));
    QObject::connect(cmdOK, &QPushButton::clicked, dialog, [dialog] {
        GestureScope::startAnew();
        dialog->cmdOK_Click();
    });
    QObject::connect(cmdCancel, &QPushButton::clicked, dialog, [dialog] {
        GestureScope::startAnew();
        dialog->cmdCancel_Click();
    });
    auto* row = new QHBoxLayout;
    row->addStretch();
    row->addWidget(cmdOK);
    row->addWidget(cmdCancel);
    return row;
}
