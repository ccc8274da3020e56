// Recognises the question whether a file may be overwritten.
#include "host/OverwriteQuestion.h"

#include "SorvaneBase/bxutils/ResourceManager.h"
#include "host/Text.h"

namespace host {

std::optional<std::wstring> pathToOverwrite(const std::string& question) {
    constexpr std::string_view placeholder = "%ls";
    const std::string format = bxutils::getResourceManager()->getText("Common", "Question.OverwriteFile");
    const std::size_t place = format.find(placeholder);
    if (place == std::string::npos)
        return std::nullopt;
    const std::string before = format.substr(0, place);
    const std::string after = format.substr(place + placeholder.size());
    if (question.size() <= before.size() + after.size() || !question.starts_with(before) ||
        !question.ends_with(after))
        return std::nullopt;
    return wide(question.substr(before.size(), question.size() - before.size() - after.size()));
}

} // namespace host
