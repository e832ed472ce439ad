# One verb for each thing to do; CMake presets do the work.
JOBS ?= $(shell nproc)
SAMPLE := examples/data/campus/r1
setup := tools/setup/install-packages.sh
lists := tools/setup

.PHONY: help run test asan tsan clang bench fuzz emit format docs install packages clean

help:
	@echo "make run      install what is missing, build, load the sample and show it"
	@echo "make test     build and run all tests, and again under ASan and UBSan"
	@echo "make asan, tsan, clang   one kind of test build alone"
	@echo "make bench    benchmarks, with ratios within one run"
	@echo "make fuzz     the fuzz targets, SECONDS=600 each"
	@echo "make emit     renew what is checked in and follows from the schema"
	@echo "make format   clang-format on all sources"
	@echo "make install  PREFIX=/usr/local"

packages:
	@$(setup)

build/%/build.ninja: | packages
	@cmake --preset $* >/dev/null

release: build/release/build.ninja
	@cmake --build --preset release -j $(JOBS) --target ospf-harbor

run: packages release
	@build/release/tools/ospf-harbor/ospf-harbor load frr $(SAMPLE) --show

test: packages
	@cmake --preset dev >/dev/null
	@cmake --build --preset dev -j $(JOBS)
	@ctest --preset dev -j $(JOBS)
	@$(MAKE) --no-print-directory asan

asan: packages
	@cmake --preset asan >/dev/null
	@cmake --build --preset asan -j $(JOBS)
	@ctest --preset asan -j $(JOBS)

tsan: packages
	@cmake --preset tsan >/dev/null
	@cmake --build --preset tsan -j $(JOBS)
	@ctest --test-dir build/tsan -j $(JOBS) --output-on-failure

clang: packages
	@$(setup) $(lists)/packages-clang.txt
	@cmake --preset clang >/dev/null
	@cmake --build --preset clang -j $(JOBS)
	@ctest --preset clang -j $(JOBS)

bench: packages
	@$(setup) $(lists)/packages-bench.txt
	@cmake --preset bench >/dev/null
	@cmake --build --preset bench -j $(JOBS)
	@build/bench/bench/harbor_bench

emit: packages
	@cmake --preset dev >/dev/null
	@cmake --build --preset dev --target emit-source

format:
	@$(setup) $(lists)/packages-clang.txt
	@git ls-files '*.cpp' '*.hpp' | xargs clang-format -i

PREFIX ?= /usr/local
install: packages release
	@cmake --build --preset release -j $(JOBS)
	@cmake --install build/release --prefix $(PREFIX)

clean:
	@rm -rf build
