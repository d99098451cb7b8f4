// Not installed. Runs copyElement for one task, and the default bodies of
// the Copyable methods.
#pragma once

#include "vcos/COSValue.h"

class COSClient;
class COSMethodInfo;
struct vxArray;

namespace sgutils {
struct CopyTask;
}

namespace sgutils::copy {

// Calls the class's copyElement for the task (an override runs) and checks
// that it returned the object the default made.
// A class that keeps the Copyable's own copyElement gets it called directly,
// with no arrays and no dispatch.
void runCopyElement(CopyTask& task, const COSClient* client);
// Calls the class's connectCopyToTree for the task, directly for a class
// that keeps the Copyable's own.
void runConnect(CopyTask& task, const COSClient* client);
// The task's copy as a 1-by-1 array (empty for none), made at the first
// question and kept with the task.
const vxArray* copyArrayOf(CopyTask& task);

// The Copyable's own copyElement and connectCopyToTree, as the class holds
// them: a class whose most derived method is one of these has no override.
void setDefaultMethods(const COSMethodInfo* copyElement, const COSMethodInfo* connect) noexcept;
const COSMethodInfo* defaultCopyElementMethod() noexcept;
const COSMethodInfo* defaultConnectMethod() noexcept;
// The Copyable flag property, which the registration made: its value sits
// in the Copyable data of both objects and is compared there.
void setCopyableFlagProperty(const COSPropInfo* property) noexcept;
const COSPropInfo* copyableFlagProperty() noexcept;

void defaultCopyElement(const COSClient* client, int& nlhs, COSValue* plhs, int nrhs, const COSValue* prhs);
void defaultConnectCopyToTree(const COSClient* client, int& nlhs, COSValue* plhs, int nrhs, const COSValue* prhs);
void copyMethod(const COSClient* client, int& nlhs, COSValue* plhs, int nrhs, const COSValue* prhs);

}  // namespace sgutils::copy
