#pragma once

#include "app/kit/look.h"

class QTextDocument;
class QObject;

namespace velmora
{

/// A document for a plain text field, of `owner`: in the font of `type` with its line height, which Qt's layout does
/// not offer by itself, and `margin` points of room round the text. It keeps no steps to undo.
QTextDocument* makeSpacedDocument(QObject* owner, const Look& look, Type type, double margin);

} // namespace velmora
