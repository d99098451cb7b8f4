// The copy transaction: the plan (one task per object, breadth first), the
// map from source to task, the two passes and the result.
#pragma once

#include <cstddef>
#include <deque>
#include <vector>

#include "sgutils/copy/CopyContext.h"
#include "sgutils/copy/CopyTask.h"
#include "sgutils/copy/CopyTaskMap.h"

class COSClass;

namespace sgutils {

class SGUTILS_API CopyContextImpl final : public CopyContext {
 public:
  // Plans the copy of `sources` under `parent` (null: no parent). Raises
  // "VANTEL:copyobj:DegenerateCopy" when an object would be copied twice.
  CopyContextImpl(const COSInterfacePtr& parent, const std::vector<COSInterfacePtr>& sources);
  ~CopyContextImpl() override;

  vxArray* getCopy(const COSClient* client, const vxArray* array) override;
  vxArray* willBeCopied(const COSClient* client, const vxArray* array) const override;
  const vxArray* getDestinationParent() const override { return destinationParentArray.get(); }
  const vxArray* getCopySources() const override { return copySourcesArray.get(); }

  // Runs both passes and returns the column of top-level copies. When a pass
  // fails, every copy made so far is deleted before the error goes on.
  vxArray* run();

  void setCopyCallbacks(bool value) noexcept { copyCallbacks = value; }
  bool getCopyCallbacks() const noexcept { return copyCallbacks; }
  // The object that wraps this context for the language.
  const vxArray* getContextObject() const noexcept { return contextObject.get(); }
  std::size_t taskCount() const noexcept { return tasks.size(); }
  // Whether the transaction copies `object` (willBeCopied for one object).
  bool isPlanned(const COSInterface* object) const noexcept { return findTask(object) != nullptr; }
  // The implementation behind a context object, or null.
  static CopyContextImpl* of(const COSInterface* object) noexcept;

 private:
  void addRootTask();
  void planSubtree(const COSInterfacePtr& source, CopyTask* parentTask);
  CopyTask* addTask(const COSInterfacePtr& source, CopyTask* parentTask);
  void connect(CopyTask& task);
  void deleteCopies() noexcept;
  CopyTask* findTask(const COSInterface* object) const noexcept;
  // Copyable::isCopyable, with the class test kept for the last class.
  bool isCopyable(const COSInterface* object);
  const copy::ClassCopyPlan* planOf(const COSInterface* object);

  COSInterfacePtr destinationParent;
  std::vector<COSInterfacePtr> sources;
  matrix::unique_vxArray contextObject;
  matrix::unique_vxArray destinationParentArray;
  matrix::unique_vxArray copySourcesArray;
  // In planning order, the root task first. A deque: tasks are only added at
  // the end and live as long as the context, so a task's address holds for
  // the whole transaction and each task costs no allocation of its own.
  std::deque<CopyTask> tasks;
  std::size_t topLevelCount = 0;
  CopyTaskMap taskMap;
  bool copyCallbacks = false;
  // The class met last while planning (children mostly share one), whether
  // it is Copyable, and its plan once asked for.
  const COSClass* lastClass = nullptr;
  bool lastClassCopyable = false;
  const copy::ClassCopyPlan* lastPlan = nullptr;
};

}  // namespace sgutils
