// Timing, medians, resident memory and the result lines of the workloads.
#pragma once

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstring>
#include <fstream>
#include <string>
#include <vector>

namespace sgbench {

inline double nowNs() {
  return std::chrono::duration<double, std::nano>(std::chrono::steady_clock::now().time_since_epoch()).count();
}

template <class F>
double timeNs(F&& f) {
  const double t0 = nowNs();
  f();
  return nowNs() - t0;
}

// The median (mean of the middle two for an even count); -1 when empty.
inline double median(std::vector<double> v) {
  if (v.empty()) return -1;
  std::sort(v.begin(), v.end());
  const std::size_t n = v.size();
  return n % 2 ? v[n / 2] : 0.5 * (v[n / 2 - 1] + v[n / 2]);
}

// A "Key:  123 kB" line of /proc/self/status in bytes, or -1.
inline long long procStatusBytes(const char* key) {
  std::ifstream in("/proc/self/status");
  const std::size_t len = std::strlen(key);
  for (std::string line; std::getline(in, line);)
    if (line.compare(0, len, key) == 0 && line.size() > len && line[len] == ':') return std::stoll(line.substr(len + 1)) * 1024;
  return -1;
}

// "sg <workload> <value> <unit>", with as many decimals as the other systems print.
inline void report(const char* workload, double value, const char* unit) {
  const int decimals = value >= 1000 ? 0 : value >= 10 ? 1 : 3;
  std::printf("sg %s %.*f %s\n", workload, decimals, value, unit);
  std::fflush(stdout);
}

}  // namespace sgbench
