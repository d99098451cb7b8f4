// The check behind a types.txt of the class generator: every name listed
// (blank lines and '#' comments aside) is a registered type once its library
// has started.
#pragma once

#include <gtest/gtest.h>

#include <fstream>
#include <string>

#include "vcos/COSTypeRepository.h"

namespace sgtest {

inline void expectEveryListedTypeRegistered(const std::string& path, int atLeast) {
  std::ifstream list(path);
  ASSERT_TRUE(list) << path << " not found";
  int names = 0;
  for (std::string line; std::getline(list, line);) {
    if (line.empty() || line[0] == '#') continue;
    ++names;
    EXPECT_TRUE(COSTypeRepository::getType(COSID(line.c_str()))) << line;
  }
  EXPECT_GE(names, atLeast);
}

}  // namespace sgtest
