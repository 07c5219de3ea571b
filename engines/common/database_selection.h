#pragma once

#include "engines/common/Client.h"

namespace ondura::engines {

// Keeps a copy of the selection beside the local database, which the component compares with the selection to
// see whether the database has to be made anew. For who makes the database.
void NoteDatabaseSelection(Client& client);

}  // namespace ondura::engines
