#pragma once

#include "canvas/canvas_pictures.h"
#include "canvas/icon_art.h"
#include "model/item.h"

#include <QElapsedTimer>
#include <QPainter>
#include <QRectF>

#include <set>
#include <string>

namespace velmora
{

/// What an item looks like, as far as its path tells.
struct ItemLook {
    IconArt art = IconArt::document;
    QString kind{};           ///< for a document: a short word
    bool mayHaveIcon = false; ///< a bundle, which may bring its own icon
    std::string path{};       ///< of what the icon belongs to
    bool missing = false;     ///< the item is a file that is not there
};

/// The icons of the items: a bundle's own, else one of ours. Reading many bundles takes a while, so that a drawing
/// reads only for a moment and shows our icon for the rest, which readSome() catches up with.
class ItemIcons
{
public:
    explicit ItemIcons(CanvasPictures& pictures) : m_pictures(pictures) {}

    ItemLook look(const DMGItem& item);
    /// Draws the icon of an item of that look into the square; `ratio` is the device's pixels a painter's unit.
    void draw(QPainter& painter, const ItemLook& look, const QRectF& square, double ratio);

    /// A drawing begins: it may read for a moment.
    void beginDrawing();
    [[nodiscard]] bool hasUnread() const { return !m_unread.empty(); }
    /// Reads for a moment what was not there when it was drawn.
    void readSome();

private:
    struct Unread {
        std::string path{};
        int pixels = 0;
        bool operator<(const Unread& other) const
        {
            return path != other.path ? path < other.path : pixels < other.pixels;
        }
    };
    QImage art(const ItemLook& look, int pixels);

    CanvasPictures& m_pictures;
    QCache<QString, QImage> m_art{64 * 1024};
    std::set<Unread> m_unread{};
    QElapsedTimer m_drawing{};
};

} // namespace velmora
