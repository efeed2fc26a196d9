# The commands of this project. Each installs what it needs (Debian packages), builds and runs.

.PHONY: help run test check bench coverage format clean

help:
	@echo "make run       the quickstart against a virtual supply"
	@echo "make test      every test"
	@echo "make check     sanitizers, static analysis, formatting, the Windows build"
	@echo "make bench     what the driver costs, next to the same work without it"
	@echo "make coverage  line coverage of each floor"
	@echo "make format    clang-format over all sources"
	@echo "make clean     removes build/"

run:
	@scripts/install-deps build test
	@scripts/build release virtual_supply quickstart
	@scripts/run-quickstart build/release

test:
	@scripts/install-deps build test
	@scripts/build release
	@ctest --preset release

check:
	@scripts/install-deps build test check windows
	@scripts/check

bench:
	@scripts/install-deps build test bench
	@scripts/build release
	@scripts/bench

coverage:
	@scripts/install-deps build test coverage
	@scripts/coverage

format:
	@scripts/install-deps check
	@git ls-files '*.cpp' '*.h' '*.c' | xargs clang-format -i

clean:
	@rm -rf build
