#pragma once

#include "model/RequestRecords.h"

namespace ambrel::local {

/// Each refuses a record that no client would send, with a ServiceError that names the key.
void validate(const RegisterRequest &request);
void validate(const LocationUpdateRequest &request);
void validate(const LoginRequest &request);
void validate(const LogoutRequest &request);
void validate(const DismissRequest &request);
void validate(const SeeMeRequest &request);
/// Refuses a blank or an over-long ID; `key` is how the sentence calls it.
void validateId(const char *key, const QString &id);

} // namespace ambrel::local
