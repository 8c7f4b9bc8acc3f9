// What the store refuses or notices, as one exception with a kind for programs and a sentence for people.
#pragma once

#include <stdexcept>
#include <string>
#include <string_view>

namespace vtdn::store {

enum class ErrorKind {
    malformedConnection,  ///< connection text that cannot be read, lacks its Database or names an unknown
                          ///< driver
    unknownDahs,          ///< no DAHS of that id in the directory
    alreadyExists,        ///< a file or a DAHS id that is taken
    databaseMissing,      ///< no such file or folder
    databaseLocked,       ///< another program holds the file and did not let go in time
    databaseDamaged,      ///< not readable as the format says, or a checksum that does not fit
    databaseReadOnly,     ///< the file or its folder must not be written
    databaseNewer,        ///< made by a newer version of this program
    notASiteDatabase,     ///< a file of another kind or another site
    diskFull,             ///< no room for what was to be written
    ioFailure,            ///< any other failure of the file system
    unknownParameter,     ///< no parameter of that PID
    unknownDataPoint,     ///< an interval that nothing is stored of
    notWritable,          ///< a parameter whose values are not stored
    badParameter,         ///< a parameter definition that contradicts itself or the others
    badFormula,           ///< formula text that cannot be read
    badInterval,          ///< interval text or length that is not accepted
    offBoundary,          ///< a time that is not the beginning of an interval
    outOfRange,           ///< a count, date or code outside its range
    badValue,             ///< a value that cannot be stored
    internal,             ///< the store contradicts itself
};

/// Thrown by everything in the store. what() is a whole sentence in UTF-8 that says what was refused, where,
/// and what to do next, fit to be shown to a person as it stands.
class Error : public std::runtime_error {
  public:
    Error(ErrorKind kind, const std::string& sentence) : std::runtime_error(sentence), kind_(kind) {}
    [[nodiscard]] ErrorKind kind() const { return kind_; }

  private:
    ErrorKind kind_;
};

/// A text from outside as it is quoted in a sentence: between double quotation marks, control characters as
/// \xNN, cut after 80 bytes.
[[nodiscard]] std::string quote(std::string_view text);

}  // namespace vtdn::store
