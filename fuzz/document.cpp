// The project document: what is read can be written, and is the same when it is read again.

#include "model/document.h"
#include "support/target.h"

using namespace velmora;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    DMGProject project;
    try {
        project = Document::decode(diskimage::textOf({data, size}));
    } catch (const DocumentError&) {
        return 0;
    }
    const std::string text = Document::encode(project);
    const DMGProject again = Document::decode(text);
    fuzz::expect(again == project, "a document holds what was put into it");
    fuzz::expect(Document::encode(again) == text, "the same project gives the same bytes");
    return 0;
}
