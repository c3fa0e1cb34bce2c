// makeshop DIR: a sample shop for trials and tests. See usage().
#include <exception>
#include <iostream>

#include "makeshop/options.h"
#include "makeshop/shop.h"
#include "platform/program_start.h"

int main(int count, char** words) {
  const platform::ProgramStart start(count, words);
  try {
    const makeshop::Options options = makeshop::parseOptions(start.arguments());
    if (options.help) {
      std::cout << makeshop::usage();
    } else if (options.version) {
      std::cout << "makeshop " QUENBROOK_VERSION "\n";
    } else {
      makeshop::makeShop(options);
    }
    return 0;
  } catch (const std::exception& fault) {
    std::cerr << "makeshop: " << fault.what() << '\n';
    return 1;
  }
}
