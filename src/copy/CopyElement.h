// Not installed. Runs copyElement for one task, and the default bodies of
// the Copyable methods.
#pragma once

#include "vcos/COSValue.h"

class COSClient;

namespace sgutils {
struct CopyTask;
}

namespace sgutils::copy {

// Calls the class's copyElement for the task (an override runs) and checks
// that it returned the object the default made.
void runCopyElement(CopyTask& task, const COSClient* client);

void defaultCopyElement(const COSClient* client, int& nlhs, COSValue* plhs, int nrhs, const COSValue* prhs);
void defaultConnectCopyToTree(const COSClient* client, int& nlhs, COSValue* plhs, int nrhs, const COSValue* prhs);
void copyMethod(const COSClient* client, int& nlhs, COSValue* plhs, int nrhs, const COSValue* prhs);

}  // namespace sgutils::copy
