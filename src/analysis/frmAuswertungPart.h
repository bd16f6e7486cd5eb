#pragma once

#include "analysis/request/RequestEditor.h"

#include <QGroupBox>
#include <QLabel>
#include <QObject>
#include <bitset>
#include <functional>
#include <optional>

class AnalysisModel;
class ChoicePicker;
class QComboBox;
class QRadioButton;
class QVBoxLayout;
class frmAuswertung;

/// A part of the analysis window: it owns its controls, hears what changes in the request, and shows what is of its
/// concern once the gesture that changed it is over.
class frmAuswertungPart : public QObject {
public:
    explicit frmAuswertungPart(frmAuswertung& window);
    ~frmAuswertungPart() override;

    /// Shows what has changed since the last time.
    void show();
    /// Shows everything: language, font or options are others.
    void showAll();
    /// Sets what a reader of the screen says for controls that have no caption of their own.
    virtual void nameForReaders() = 0;
    /// What is being typed counts from now on, as far as it can.
    virtual void finishTyping() {}
    /// A field that keeps a run from beginning: what is wrong with what was typed in it.
    struct Objection {
        QWidget* field;
        QString words;
    };
    virtual std::optional<Objection> objection() const { return std::nullopt; }

protected:
    using Step = std::function<void()>;

    /// What has changed since the part was shown.
    class Changes {
    public:
        void add(RequestPart part) { parts_.set(static_cast<size_t>(part)); }
        void touch() { touched_ = true; }
        bool any() const { return touched_ || parts_.any(); }
        bool has(RequestPart part) const { return is(part) || is(RequestPart::Opened); }
        /// True if something else than the request has changed, or the user has set a control.
        bool touched() const { return touched_; }

    private:
        std::bitset<32> parts_;
        bool touched_ = false;
        bool is(RequestPart part) const { return parts_.test(static_cast<size_t>(part)); }
    };

    frmAuswertung& window_;
    AnalysisModel& model_;

    virtual bool concerns(RequestPart part) const = 0;
    virtual void showChanges(const Changes& changes) = 0;
    /// A gesture in the part's controls; these then show what the request has, whatever became of the gesture.
    void act(const Step& step);
    /// The same for one that may compute.
    void run(const Step& step);
    /// A field with something typed in it was left: what has the focus now is to get it first.
    void finishTypingSoon();
    /// Shows the part again after this gesture.
    void touch() { changes_.touch(); }

    // ---- what the parts are put together from

    template<class Widget>
    static Widget* control(const QString& name, const QString& text, QWidget* parent) {
        auto* widget = new Widget(text, parent);
        widget->setObjectName(name);
        return widget;
    }
    /// A label whose text comes from the catalogue or the run.
    static QLabel* factLabel(const QString& name, QWidget* parent);
    static QLabel* caption(const QString& name, const QString& text, QWidget* buddy, QWidget* parent);
    /// What a table of several views shows.
    static QComboBox* valuesPicker(const QString& name, QWidget* parent);
    static ChoicePicker* picker(const QString& name, QWidget* parent);
    ChoicePicker* searchPicker(const QString& name, QWidget* parent);
    /// Of a picker that is in use.
    static std::optional<Objection> objectionOf(std::initializer_list<ChoicePicker*> pickers);

    struct InRow {
        QWidget* widget;
        int stretch;
    };
    /// A row that goes on in the next line, further in, where the window is narrow.
    static void addRow(QVBoxLayout* rows, std::initializer_list<InRow> widgets, int hanging = 0);
    /// The name of something and, wider, its title.
    static QWidget* besideEachOther(ChoicePicker* name, ChoicePicker* title);
    /// How far the text of a radio button stands in.
    static int textIndent(const QRadioButton& button);

    /// The index of what has this value or name; -1 without one.
    static int placeOf(const std::vector<BoundPicker>& list, const QString& value);
    static int placeOf(const std::vector<StudyVariable>& list, const QString& name);

private:
    int listener_;
    Changes changes_;
};

/// Captions that stand below each other get one width, so that what they name begins at one line.
void giveSameWidth(const QList<QWidget*>& captions);
