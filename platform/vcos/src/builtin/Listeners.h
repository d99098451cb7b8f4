// Not installed; internal to the built-in classes of the class-object system.
//
// Members of the listener and event data classes, and the one way to make a
// listener object and attach it to its sources.
#pragma once

#include "vcos/src/builtin/ListenerBlock.h"

class COSClass;
class COSClient;

namespace vcos::builtin {

void addListenerMembers(COSClass* cls);
void addPropListenerMembers(COSClass* cls);
void addEventDataMembers(COSClass* cls);
void addPropertyEventMembers(COSClass* cls);

// Makes a listener object from the inputs of addlistener or of a listener
// class's constructor: (source, eventName, callback) gives an
// "event.listener", (source, properties, propertyEvent, callback) an
// "event.proplistener". Every source and name is checked before anything
// is attached. The result is held by nothing but the caller: the sources
// do not keep it alive.
COSInterfacePtr constructListenerObject(const COSClient* client, int nrhs, const vxArray* prhs[]);
// Makes the sources of a listener object keep it alive (addlistener's
// listeners live as long as a source or a variable holds them).
void keepWithSources(const COSInterfacePtr& listenerObject);

}  // namespace vcos::builtin
