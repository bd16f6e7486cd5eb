#include "widgets/termMarks.h"

#include "search/termPlaces.h"
#include "widgets/contrast.h"

#include <QEvent>
#include <QPlainTextEdit>
#include <QTextBlock>
#include <QTextEdit>
#include <QTextLayout>
#include <QTimer>

namespace {

/// Blue, as bright as it takes to be read.
QColor markColour(const QPalette& palette) {
    const QColor ground = palette.color(QPalette::Base);
    QColor blue(Qt::blue);
    for (int lightness = blue.lightness(); lightness < 230 && contrast(blue, ground) < 4.6; lightness += 8)
        blue = QColor::fromHsl(230, 255, lightness);
    return blue;
}

/// The marks of one text. They lie in the layout of its paragraphs, not in the text: it is as unchanged as before, and
/// ten thousand are set in one go.
class TermMarks : public QObject {
public:
    TermMarks(QWidget& edit, QTextDocument& document, std::vector<TermPlace> places)
        : QObject(&edit), edit_(edit), document_(document), places_(std::move(places)), revision_(document.revision()) {
        setObjectName(name);
        edit.installEventFilter(this);
        show();
    }
    static inline const QString name = QStringLiteral("qt_term_marks");

protected:
    bool eventFilter(QObject*, QEvent* event) override {
        if (event->type() == QEvent::PaletteChange && document_.revision() == revision_)
            show();
        return false;
    }

private:
    QWidget& edit_;
    QTextDocument& document_;
    std::vector<TermPlace> places_;
    int revision_;

    void show() const {
        QTextLayout::FormatRange mark;
        mark.format.setForeground(markColour(edit_.palette()));
        mark.format.setFontWeight(QFont::Bold);
        auto place = places_.begin();
        int first = -1, behind = 0; // of what changes: laid out once, not paragraph by paragraph
        for (QTextBlock block = document_.begin(); block.isValid(); block = block.next()) {
            QList<QTextLayout::FormatRange> marks;
            const int begin = block.position(), end = begin + block.length();
            for (; place != places_.end() && place->start < end; ++place) {
                mark.start = static_cast<int>(place->start) - begin;
                mark.length = static_cast<int>(place->length);
                marks << mark;
            }
            if (marks.isEmpty() && block.layout()->formats().isEmpty())
                continue;
            block.layout()->setFormats(marks);
            first = first < 0 ? begin : first;
            behind = end;
        }
        if (first >= 0)
            document_.markContentsDirty(first, behind - first);
    }
};

template<class Edit>
void mark(Edit& edit, const QStringList& terms) {
    delete edit.template findChild<QObject*>(TermMarks::name, Qt::FindDirectChildrenOnly);
    // As the document has it: sign by sign, whatever it becomes elsewhere.
    const QString text = edit.document()->toRawText();
    new TermMarks(edit, *edit.document(), termPlaces(text, terms));
    for (const QString& term : terms) {
        const std::vector<TermPlace> places = termPlaces(text, term);
        if (places.empty())
            continue;
        QTextCursor cursor(edit.document());
        cursor.setPosition(static_cast<int>(places.front().start));
        cursor.setPosition(static_cast<int>(places.front().start + places.front().length), QTextCursor::KeepAnchor);
        edit.setTextCursor(cursor);
        edit.ensureCursorVisible();
        // A window that has just come into view is laid out later.
        QTimer::singleShot(0, &edit, [&edit] { edit.ensureCursorVisible(); });
        return;
    }
}

} // namespace

void markTerms(QPlainTextEdit& edit, const QStringList& terms) {
    mark(edit, terms);
}

void markTerms(QTextEdit& edit, const QStringList& terms) {
    mark(edit, terms);
}
