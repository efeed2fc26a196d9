# The commands of this project. Each installs what it needs (Debian packages), builds and runs.

.PHONY: help run run-windows test check package wheel docs bench fault-sweep fuzz soak coverage format clean

help:
	@echo "make run          the quickstart against a virtual supply"
	@echo "make run-windows  the same with the driver for Windows, under Wine"
	@echo "make test         every test; those of the driver for Windows under Wine"
	@echo "make check        sanitizers, static analysis, formatting, the packages"
	@echo "make package      a tar.gz and a .deb for Linux, a zip for Windows, into build/packages"
	@echo "make wheel        wheels of the Python package for Linux and Windows, into build/wheels"
	@echo "make docs         HTML of the pages in docs/ and a reference, into build/docs/html"
	@echo "make bench        what the driver costs, next to the same work without it"
	@echo "make fault-sweep, make fuzz, make soak: what must not bring the driver down, in their long forms"
	@echo "make coverage     line coverage of each floor"
	@echo "make format       clang-format over all sources"
	@echo "make clean        removes build/"

run:
	@scripts/install-deps build test
	@scripts/build release virtual_supply quickstart
	@scripts/run-quickstart build/release

run-windows:
	@scripts/install-deps build test windows wine
	@scripts/build release virtual_supply
	@scripts/build windows
	@scripts/run-quickstart build/release build/windows

test:
	@scripts/install-deps build test windows wheel
	@scripts/build release
	@ctest --preset release
	@scripts/test-windows

package:
	@scripts/install-deps build test windows package
	@scripts/package

wheel:
	@scripts/install-deps build test windows wheel
	@scripts/wheel

docs:
	@scripts/install-deps docs
	@scripts/build-docs

check:
	@scripts/install-deps build test check windows wine package docs wheel
	@scripts/check

bench:
	@scripts/install-deps build test bench
	@scripts/build release
	@scripts/bench

fault-sweep:
	@scripts/install-deps build test
	@scripts/build release fault_sweep
	@build/release/tests/hostile/fault_sweep --long

fuzz:
	@scripts/install-deps build test check
	@scripts/fuzz 600

soak:
	@scripts/install-deps build test
	@scripts/build release soak
	@build/release/tests/hostile/soak 1800

coverage:
	@scripts/install-deps build test coverage
	@scripts/coverage

format:
	@scripts/install-deps check
	@git ls-files '*.cpp' '*.h' '*.c' | xargs clang-format -i

clean:
	@rm -rf build
