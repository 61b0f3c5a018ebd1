#include "pipeline/problem_field.h"

#include "pipeline/problem.h"

namespace velmora
{

ProblemField problemField(const DMGProject& project, const std::string& key)
{
    ProblemField field{.key = key};
    const auto lookIn = [&field](const char* list, const auto& elements) {
        for (std::size_t i = 0; i < elements.size(); ++i) {
            if (field.key.starts_with(elementField(list, i, "")))
                field.element = elements[i].id;
        }
    };
    lookIn("items", project.items);
    lookIn("overlayImages", project.overlayImages);
    lookIn("textOverlays", project.textOverlays);
    return field;
}

} // namespace velmora
