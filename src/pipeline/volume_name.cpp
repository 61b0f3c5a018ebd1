#include "pipeline/volume_name.h"

#include "pipeline/build_error.h"

#include <algorithm>

namespace velmora
{
namespace
{

std::string usableVersion(const ApplicationBundle& application)
{
    const std::string where = "“" + application.fileName + "”, Info.plist: ";
    if (application.version.empty())
        throw BuildError(where + "there is no version to put in the place of {version}.");
    const auto isHostile = [](char c) { return c == ':' || c == '/' || (c >= 0 && c < 0x20) || c == 0x7F; };
    if (std::any_of(application.version.begin(), application.version.end(), isHostile))
        throw BuildError(where + "the version “" + application.version +
                         "” cannot be part of a volume name; it holds “:”, “/” or a control character.");
    return application.version;
}

std::string replacement(const std::string& key, const std::function<ApplicationBundle()>& application)
{
    if (key == "name")
        return application().name;
    if (key == "version")
        return usableVersion(application());
    throw BuildError("The volume name holds {" + key + "}, which means nothing; {name} and {version} are known.");
}

} // namespace

std::string expandVolumeName(const std::string& text, const std::function<ApplicationBundle()>& application)
{
    std::string result;
    std::size_t done = 0;
    for (auto open = text.find('{'); open != std::string::npos; open = text.find('{', done)) {
        const auto close = text.find('}', open);
        if (close == std::string::npos)
            throw BuildError("The volume name holds a “{” that is not closed: " + text);
        result += text.substr(done, open - done) + replacement(text.substr(open + 1, close - open - 1), application);
        done = close + 1;
    }
    return result + text.substr(done);
}

} // namespace velmora
