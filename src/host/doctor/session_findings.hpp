// What the person's session offers: where credentials are kept, the Secret Service, the desktop's portal. Asking
// unlocks and changes nothing, and no step waits longer than some seconds. The bus may start the Secret Service, as it
// does for the extension.
#pragma once

#include <optional>
#include <string>

#include "host/credentials/credential_store.hpp"
#include "host/doctor/finding.hpp"

namespace host {

/// The store that the extension reads the credentials from.
Finding keychainFinding(CredentialStore& store);

/// Whether there is a token, never the token.
Finding tokenFinding(CredentialStore& store);

struct AddressFinding {
  Finding finding;
  bool encrypted = true;  ///< https, where certificates count
};
/// The service's address: its scheme and host alone.
AddressFinding addressFinding(CredentialStore& store);

Finding secretServiceFinding(CredentialStore& store);
Finding portalFinding();

}  // namespace host
