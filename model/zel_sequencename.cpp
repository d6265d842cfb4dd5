#include "model/zel_sequencename.h"

#include "core/kepcore/kep_exceptions.h"

namespace zel {

std::string MakeSequenceName(const std::string& nameTemplate, int index) {
    const std::size_t begin = nameTemplate.find('X');
    const std::size_t end = nameTemplate.find_first_not_of('X', begin);
    if (end == std::string::npos)
        throw kep::InternalException("Missing suffix in the template name.");
    std::string name = nameTemplate;
    for (std::size_t digit = end; digit-- > begin; index /= 10)
        name[digit] = static_cast<char>('0' + index % 10);
    return name;
}

} // namespace zel
