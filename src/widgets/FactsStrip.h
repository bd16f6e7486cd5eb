#pragma once

#include <QFrame>
#include <QHash>
#include <functional>

class QToolButton;

/// The strip of a variable panel: cells that are known by a key and have a text and a tooltip. The first seven are
/// switches, the others show facts. What one line is too short for goes on in the next.
class FactsStrip : public QFrame {
public:
    explicit FactsStrip(QWidget* parent = nullptr);

    std::function<void(const QString& key)> switched; ///< a switch was pressed, by mouse or keyboard

    /// Keys of the cells, in order.
    QStringList keys() const;
    QWidget* cell(const QString& key) const { return cells_.value(key); }
    void removeCell(const QString& key);

    QString text(const QString& key) const;
    void setText(const QString& key, const QString& text);
    QString toolTipOf(const QString& key) const { return toolTips_.value(key); }
    void setToolTipOf(const QString& key, const QString& toolTip);
    /// Shows a switch pressed in, with its picture for it.
    void setOn(const QString& key, bool on);
    bool isOn(const QString& key) const;

    /// Puts the strip, in the order of the Tab key, behind a control (null: where it is) and others behind the strip.
    void orderTabs(QWidget* before, const QList<QWidget*>& after);

protected:
    bool event(QEvent* event) override;
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    QHash<QString, QWidget*> cells_;
    QHash<QString, QString> toolTips_;
    QList<QWidget*> buttons_;

    QToolButton* button(const QString& key) const;
    void stopAt(QWidget* button);
};
