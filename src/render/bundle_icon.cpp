#include "render/bundle_icon.h"

#include "platform/file_tree.h"
#include "render/bundle_info.h"

namespace velmora
{

PicturePtr bundleIcon(const std::filesystem::path& bundle)
{
    try {
        const auto file = bundleIconFile(bundle, readBundleInfo(bundle));
        return file ? readPicture(QString::fromStdString(file->string())) : nullptr;
    } catch (const FileError&) {
        return nullptr; // a damaged bundle is shown with the standard icon
    }
}

} // namespace velmora
