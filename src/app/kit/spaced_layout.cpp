#include "app/kit/spaced_layout.h"

#include <QFontMetricsF>
#include <QPlainTextDocumentLayout>
#include <QTextBlock>
#include <QTextDocument>
#include <QTextLayout>

#include <algorithm>

namespace velmora
{
namespace
{

/// Plain text with `extra` device-independent pixels below each line.
class SpacedLayout : public QPlainTextDocumentLayout
{
public:
    SpacedLayout(QTextDocument* document, double extra) : QPlainTextDocumentLayout(document), m_extra(extra) {}

    [[nodiscard]] QRectF blockBoundingRect(const QTextBlock& block) const override
    {
        QRectF rect = QPlainTextDocumentLayout::blockBoundingRect(block);
        if (!block.isValid() || !block.isVisible())
            return rect;
        const QTextLayout* layout = block.layout();
        const double below = rect.height() - layout->boundingRect().bottom(); // the margin of the last block
        double y = 0;
        for (int i = 0; i < layout->lineCount(); ++i) {
            QTextLine line = layout->lineAt(i);
            line.setPosition({line.x(), y});
            y += line.height() + m_extra;
        }
        rect.setHeight(y + below);
        return rect;
    }

private:
    double m_extra;
};

} // namespace

QTextDocument* makeSpacedDocument(QObject* owner, const Look& look, Type type, double margin)
{
    const QFont font = look.font(type);
    auto* document = new QTextDocument(owner);
    document->setDocumentLayout(
        new SpacedLayout(document, std::max(0.0, look.lineHeight(type) - QFontMetricsF(font).lineSpacing())));
    document->setDefaultFont(font);
    document->setDocumentMargin(look.length(margin));
    document->setUndoRedoEnabled(false);
    return document;
}

} // namespace velmora
