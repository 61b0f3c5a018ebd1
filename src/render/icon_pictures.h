#pragma once

#include <QByteArray>
#include <QImage>

namespace velmora
{

/// The largest picture of an icon family that can be decoded; null when there is none or the file is damaged.
/// `decodePng` gets the bytes of a PNG element.
QImage decodeIconFamily(const QByteArray& bytes, QImage (*decodePng)(const QByteArray& png));

} // namespace velmora
