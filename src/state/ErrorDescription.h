#pragma once

#include <QString>

namespace ambrel {

/// The sentence for the user about the exception being handled; call it inside a catch block only.
QString currentErrorDescription();

} // namespace ambrel
