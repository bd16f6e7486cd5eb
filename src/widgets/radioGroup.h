#pragma once

#include <QRadioButton>

/// Lets the Tab key stop at the chosen button of a group only. Within the group the arrow keys choose, which they do
/// from that one alone; Qt itself looks after this only once the keyboard has been in the group.
template<class Buttons>
void stopAtChosen(const Buttons& group) {
    for (QRadioButton* button : group) {
        const auto follow = [button, group](bool on) {
            for (QRadioButton* other : group)
                if (on)
                    other->setFocusPolicy(other == button ? Qt::StrongFocus : Qt::ClickFocus);
        };
        QObject::connect(button, &QRadioButton::toggled, button, follow);
        follow(button->isChecked());
    }
}
