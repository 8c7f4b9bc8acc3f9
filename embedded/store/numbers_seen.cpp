#include "store/numbers_seen.h"

#include <string>

#include "store/error.h"

namespace vtdn::store {

void NumbersSeen::add(std::int32_t number) {
    const std::string which = "The " + std::string(what_) + " " + std::to_string(number) + " ";
    if (number < 0 || number > highest_)
        throw Error(ErrorKind::outOfRange, which + "is outside 0 to " + std::to_string(highest_) + ".");
    if (!seen_.insert(number).second) throw Error(ErrorKind::outOfRange, which + "is given twice.");
}

}  // namespace vtdn::store
