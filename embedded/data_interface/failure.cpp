#include "data_interface/failure.h"

#include "com/error.h"
#include "com/strings.h"

namespace vtdn::embedded {

HRESULT resultOf(store::ErrorKind kind) {
    using enum store::ErrorKind;
    switch (kind) {
        case badInterval:
        case offBoundary:
        case badValue:
        case badFormula:
        case badParameter:
        case malformedConnection:
            return invalidCall;
        case unknownParameter:
        case unknownDahs:
        case unknownDataPoint:
            return DISP_E_BADINDEX;
        case outOfRange:
            return DISP_E_OVERFLOW;
        case databaseMissing:
            return fileNotFound;
        case databaseLocked:
        case databaseReadOnly:
        case notWritable:
            return permissionDenied;
        case diskFull:
            return embedded::diskFull;
        case ioFailure:
            return deviceError;
        case alreadyExists:
        case databaseDamaged:
        case databaseNewer:
        case notASiteDatabase:
        case internal:
            break;
    }
    return E_FAIL;
}

std::wstring sentenceOf(const store::Error& error) {
    return com::fromUtf8(error.what());
}

void throwRefusal(const store::Error& error) {
    com::throwError(resultOf(error.kind()), sentenceOf(error));
}

}  // namespace vtdn::embedded
