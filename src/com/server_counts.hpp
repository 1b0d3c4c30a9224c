#pragma once

// The server's live objects and the locks callers hold on it (IClassFactory::LockServer): the
// DLL may be unloaded only when both are zero.

namespace fnrk::com {

void CountObjectCreated();
void CountObjectDestroyed();
void CountLock(bool lock);
bool ServerInUse();

}  // namespace fnrk::com
