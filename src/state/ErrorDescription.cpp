#include "state/ErrorDescription.h"

#include "model/LocalizedError.h"

#include <new>

namespace ambrel {

QString currentErrorDescription()
{
    try {
        throw;
    } catch (const LocalizedError &error) {
        return error.errorDescription();
    } catch (const std::bad_alloc &) {
        return QStringLiteral("There is not enough memory for the server's answer.");
    } catch (...) {
        return QStringLiteral("Something went wrong.");
    }
}

} // namespace ambrel
