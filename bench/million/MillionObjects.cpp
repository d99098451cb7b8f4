// A million graphics objects in one run: figures with axes and lines made,
// searched with findobj, copied (the copies deleted again), saved to memory,
// loaded, and deleted. Prints the time of each step and the process's
// resident memory at the start, after each step and at the end, where it
// should be back near the start.
//
//   sg_million_objects [objects] [steps]
//
// `objects` is the total below the root (default 1,000,000: 10 figures of
// 10 axes each, their titles and labels, and lines to make up the rest);
// `steps` is a word of letters choosing the optional steps: f findobj,
// c copy, s save and load (default "fcs").
#include <malloc.h>

#include <cctype>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <string>
#include <vector>

#include "sgclasses/ClassNames.h"
#include "sgclasses/Drawnow.h"
#include "sgclasses/Objects.h"
#include "sgclasses/Registration.h"
#include "sgutils/copy/CopyContext.h"
#include "sgutils/persistence/GraphicsFile.h"
#include "vcos/COSClient.h"
#include "vcos/COSInterface.h"
#include "vcos/COSObjectOperations.h"
#include "vcos/MemoryPools.h"
#include "vcos/ObjectArray.h"
#include "vcos/ObjectCalls.h"
#include "vx/matrix.h"
#include "vx/vx.h"

namespace {

using Arr = matrix::unique_vxArray;
using Clock = std::chrono::steady_clock;

constexpr int kFigures = 10;
constexpr int kAxesPerFigure = 10;

// A "Key:  123 kB" line of /proc/self/status in MiB: VmRSS is the resident
// memory now, VmHWM its peak.
double statusMiB(const char* key) {
  std::ifstream in("/proc/self/status");
  const std::string prefix = std::string(key) + ":";
  for (std::string line; std::getline(in, line);)
    if (line.rfind(prefix, 0) == 0) return std::stod(line.substr(prefix.size())) / 1024.0;
  return -1;
}
double residentMiB() { return statusMiB("VmRSS"); }

// Where the resident memory lies, from /proc/self/smaps: the malloc heap,
// other anonymous mappings (slabs of the pools, large malloc blocks,
// stacks) and mapped files (the program and its libraries).
std::string residentSplit() {
  std::ifstream in("/proc/self/smaps");
  double heap = 0, anonymous = 0, files = 0;
  int kind = 0;  // of the current mapping: 0 heap, 1 anonymous, 2 file
  for (std::string line; std::getline(in, line);) {
    if (line.empty()) continue;
    if (std::isxdigit(static_cast<unsigned char>(line[0])) && line.find('-') < line.find(' ')) {
      // "start-end perms offset dev inode [path]": the path is the sixth field.
      std::size_t pos = 0;
      for (int field = 0; field < 5 && pos != std::string::npos; ++field) pos = line.find_first_not_of(' ', line.find(' ', pos));
      const std::string path = pos == std::string::npos ? "" : line.substr(pos);
      kind = path == "[heap]" ? 0 : (path.empty() || path[0] == '[') ? 1 : 2;
    } else if (line.rfind("Rss:", 0) == 0) {
      const double kib = std::stod(line.substr(4));
      (kind == 0 ? heap : kind == 1 ? anonymous : files) += kib / 1024.0;
    }
  }
  char text[160];
  std::snprintf(text, sizeof text, "heap %.1f MiB, other anonymous %.1f MiB, files %.1f MiB", heap, anonymous, files);
  return text;
}

// The objects below `top`, hidden ones too, `top` not counted.
std::size_t countBelow(COSInterface* top) {
  std::size_t n = 0;
  for (COSInterface* c = top->getOldestChild(); c; c = c->getNewerSibling()) n += 1 + countBelow(c);
  return n;
}

Clock::time_point stepStart;

void report(const char* step, const std::string& note = {}) {
  const double seconds = std::chrono::duration<double>(Clock::now() - stepStart).count();
  std::printf("%-24s %9.2f s %10.1f MiB %10zu live  %s\n", step, seconds, residentMiB(), vcos::liveObjectCount(),
              note.c_str());
  std::fflush(stdout);
  stepStart = Clock::now();
}

Arr objectRow(const std::vector<COSInterfacePtr>& objects) {
  Arr row(omCreateVCOSMatrix(1, objects.size(), sgclasses::kFigureClass));
  for (std::size_t i = 0; i < objects.size(); ++i) omSetArrayElement(row.get(), i, objects[i]);
  return row;
}

void deleteAll(const std::vector<COSInterfacePtr>& objects) {
  for (const COSInterfacePtr& o : objects)
    if (!o->isDestroyed()) o->deleteObject(nullptr);
  sgclasses::forgetDeletedDirtyObjects();
}

}  // namespace

int main(int argc, char** argv) {
  const std::size_t wanted = argc > 1 ? std::strtoull(argv[1], nullptr, 10) : 1000000;
  const std::string steps = argc > 2 ? argv[2] : "fcs";
  const bool doFind = steps.find('f') != std::string::npos;
  const bool doCopy = steps.find('c') != std::string::npos;
  const bool doSave = steps.find('s') != std::string::npos;

  sgclasses::registerClasses();
  COSInterfacePtr root = sgclasses::root();
  std::printf("%-24s %11s %14s %15s\n", "step", "time", "resident", "instances");
  stepStart = Clock::now();
  report("start");

  std::vector<COSInterfacePtr> figures;
  std::vector<COSInterfacePtr> axes;
  {
    for (int f = 0; f < kFigures; ++f) {
      figures.push_back(sgclasses::create(sgclasses::kFigureClass, root));
      for (int a = 0; a < kAxesPerFigure; ++a) axes.push_back(sgclasses::create(sgclasses::kAxesClass, figures.back()));
    }
    const std::size_t frame = countBelow(root.get());
    const std::size_t lines = wanted > frame ? wanted - frame : 0;
    for (std::size_t i = 0; i < lines; ++i) sgclasses::create(sgclasses::kLineClass, axes[i % axes.size()]);
  }
  const std::size_t made = countBelow(root.get());
  report("create", std::to_string(made) + " objects below the root");

  if (doFind) {
    Arr self(omCreateVCOSScalar(root));
    Arr type(vxCreateString("Type")), line(vxCreateString("line"));
    const vxArray* inputs[] = {self.get(), type.get(), line.get()};
    vxArray* result = nullptr;
    omCallMethod(COSID("vantel.graphics.Graphics"), "findobj", COSGetPublicClient(), 1, &result, 3, inputs, true);
    Arr found(result);
    report("findobj Type line", std::to_string(vxGetNumberOfElements(found.get())) + " found");
  }

  if (doCopy) {
    std::vector<COSInterfacePtr> copies;
    {
      Arr result(sgutils::CopyContext::doCopyObjects(figures, {root}, false));
      for (std::size_t i = 0; i < vxGetNumberOfElements(result.get()); ++i)
        copies.push_back(omGetArrayElement(result.get(), i));
    }
    report("copy", std::to_string(countBelow(root.get()) - made) + " objects copied");
    deleteAll(copies);
    copies.clear();
    report("delete the copies");
  }

  if (doSave) {
    std::vector<std::uint8_t> bytes;
    {
      Arr value = objectRow(figures);
      const std::pair<std::string, const vxArray*> values[] = {{"figures", value.get()}};
      bytes = sgutils::GraphicsFile::serialize(values);
    }
    report("save", std::to_string(bytes.size()) + " bytes");
    std::vector<COSInterfacePtr> loaded;
    {
      sgutils::GraphicsLoadOptions options;
      options.parentOfTopLevel = [root](const COSInterfacePtr&) { return root; };
      std::vector<vxNamedValue> values = sgutils::GraphicsFile::deserialize(bytes, options);
      for (std::size_t i = 0; i < vxGetNumberOfElements(values.at(0).value.get()); ++i)
        loaded.push_back(omGetArrayElement(values.at(0).value.get(), i));
    }
    bytes = {};
    report("load", std::to_string(countBelow(root.get()) - made) + " objects loaded");
    deleteAll(loaded);
    loaded.clear();
    report("delete the loaded");
  }

  axes.clear();
  deleteAll(figures);
  figures.clear();
  report("delete the originals");
  root.reset();
  sgclasses::releaseRoot();
  report("release the root", residentSplit());
  vcos::releaseKeptSlabs();
  malloc_trim(0);
  report("end (trimmed)",
         "peak " + std::to_string(static_cast<long>(statusMiB("VmHWM"))) + " MiB; " + residentSplit());
  return 0;
}
