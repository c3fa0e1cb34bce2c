// makeshop DIR: a sample shop for trials and tests. See usage().
#include <cstdio>
#include <exception>
#include <string>
#include <vector>

#include "makeshop/options.h"
#include "makeshop/shop.h"

int main(int argc, char** argv) {
  try {
    const makeshop::Options options = makeshop::parseOptions({argv + 1, argv + argc});
    if (options.help) {
      std::fputs(makeshop::usage(), stdout);
    } else if (options.version) {
      std::puts("makeshop " QUENBROOK_VERSION);
    } else {
      makeshop::makeShop(options);
    }
    return 0;
  } catch (const std::exception& fault) {
    std::fprintf(stderr, "makeshop: %s\n", fault.what());
    return 1;
  }
}
