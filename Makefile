# One verb for each thing to do; CMake presets do the work.
JOBS ?= $(shell nproc)
SAMPLE := examples/data/campus/r1
CAPTURE := examples/data/campus/all.pcap
PICTURE := build/release/campus.svg
STORE := build/release/example.store
setup := tools/setup/install-packages.sh
lists := tools/setup

.PHONY: help release run test asan tsan clang torture torture-replication mutate coverage bench bench-peers fuzz random-routes browser-test \
	emit format reproducible install packages abi docs docs-test deb package-test clean

help:
	@echo "make run      install what is missing, build, show a router, a captured database and its picture"
	@echo "make test     build and run all tests, and again under ASan and UBSan"
	@echo "make asan, clang   one kind of test build alone; make tsan   the tests that have threads"
	@echo "make torture  10,000 writers of stores are killed, and each store looked through"
	@echo "make torture-replication   1,000 rounds of trouble between senders, an engine and followers"
	@echo "make mutate   what the tests would not notice, from the mutations in tests/mutations"
	@echo "make coverage COVERAGE=-v   lines and branches of src/ and runtime/ that the tests run"
	@echo "make bench    benchmarks, with ratios within one run"
	@echo "make bench-peers   the encodings beside serialisation libraries"
	@echo "make fuzz     the fuzz targets, FUZZ_SECONDS=600 each"
	@echo "make random-routes   routes of 10,000 random networks, compared with a second implementation"
	@echo "make browser-test   the pages of pictures in a browser, with screenshots in build/browser"
	@echo "make emit     renew what is checked in and follows from the schema"
	@echo "make format   clang-format on all sources"
	@echo "make reproducible   two release builds in two folders, compared byte by byte"
	@echo "make install  PREFIX=/usr/local"
	@echo "make abi      what the present state breaks for programs that were built against the last release"
	@echo "make docs     the documentation as pages, in build/docs; make docs-test looks at them in a browser"
	@echo "make deb      Debian packages, in build/packages; make package-test installs and uses them in a fresh root"

packages:
	@$(setup)

release:
	@cmake --preset release >/dev/null
	@cmake --build --preset release -j $(JOBS) --target ospf-harbor

run: packages
	@$(MAKE) --no-print-directory release
	@build/release/tools/ospf-harbor/ospf-harbor load frr $(SAMPLE) --show
	@tools/ospf-harbor/two_processes.sh build/release/tools/ospf-harbor/ospf-harbor $(SAMPLE)
	@echo
	@rm -f $(STORE) $(STORE)-log $(STORE)-lock
	@build/release/tools/ospf-harbor/ospf-harbor load frr $(SAMPLE) --store $(STORE)
	@echo "another process shows of the store $(STORE):"
	@build/release/tools/ospf-harbor/ospf-harbor interfaces --v2 --store $(STORE)
	@echo
	@printf '%s\n' 'load capture $(CAPTURE)' show 'neighbors --v2 --area 0' \
		'lsdb --v2 --area 2' 'graph --v2 --svg -o $(PICTURE)' | \
		build/release/tools/ospf-harbor/ospf-harbor shell
	@echo "the topology is drawn in $(PICTURE)"

test: packages
	@cmake --preset dev >/dev/null
	@cmake --build --preset dev -j $(JOBS)
	@ctest --preset dev -j $(JOBS)
	@$(MAKE) --no-print-directory asan

asan: packages
	@cmake --preset asan >/dev/null
	@cmake --build --preset asan -j $(JOBS)
	@ctest --preset asan -j $(JOBS)

# The tests that have threads: the runtime's, and those of stores.
tsan: packages
	@cmake --preset tsan >/dev/null
	@cmake --build --preset tsan -j $(JOBS) --target kelp_tests store_tests
	@build/tsan/runtime/kelp_tests --gtest_brief=1
	@build/tsan/tests/store_tests --gtest_brief=1 --gtest_filter='Store.*:StoreFeed.*:StoreEdges.*'

torture: packages
	@cmake --preset dev >/dev/null
	@cmake --build --preset dev -j $(JOBS) --target store_tests
	@HARBOR_STORE_KILLS=10000 build/dev/tests/store_tests --gtest_filter='StoreKill.*'

torture-replication: packages
	@cmake --preset dev >/dev/null
	@cmake --build --preset dev -j $(JOBS) --target replication_tests
	@HARBOR_REPLICATION_ROUNDS=1000 build/dev/tests/replication_tests --gtest_filter='ReplicationRounds.*'

clang: packages
	@cmake --preset clang >/dev/null
	@cmake --build --preset clang -j $(JOBS)
	@ctest --preset clang -j $(JOBS)

# The tests of the dev build, run with libraries that count what they run. Those of messages have
# thousands of children, whose counts are not waited for.
coverage: packages
	@cmake --preset dev >/dev/null
	@cmake --build --preset dev -j $(JOBS)
	@cmake --preset coverage >/dev/null
	@cmake --build --preset coverage -j $(JOBS) --target ospf_harbor_oper
	@find build/coverage -name '*.gcda' -delete
	@$(CXX) -shared -fPIC -std=c++20 -o build/coverage/ends.so tests/coverage/ends.cpp
	@export LD_LIBRARY_PATH=$(CURDIR)/build/coverage/src:$(CURDIR)/build/coverage/runtime; \
		LD_PRELOAD=$(CURDIR)/build/coverage/ends.so ctest --preset dev -j $(JOBS) --quiet \
			-E '^(headers|sections|install|emit|setup)|/(Table|Type)Messages' || failed=1; \
		ctest --preset dev -j $(JOBS) --quiet -R '/(Table|Type)Messages' || failed=1; \
		[ -z "$$failed" ] || echo "some tests fail, their counts stand below all the same"
	@tests/coverage/report.py $(COVERAGE) build/coverage

MUTATIONS ?=
mutate: packages
	@cmake --preset dev >/dev/null
	@cmake --build --preset dev -j $(JOBS) --target system_tests message_tests kelp_tests \
		kelp_fault_tests store_tests
	@tests/mutations/run.py -j $(JOBS) $(MUTATIONS)

# Medians of five, and how far they spread.
bench_medians := --benchmark_repetitions=5 --benchmark_report_aggregates_only=true
bench: packages
	@$(setup) $(lists)/packages-bench.txt
	@cmake --preset bench >/dev/null
	@cmake --build --preset bench -j $(JOBS)
	@build/bench/bench/harbor_bench $(bench_medians)
	@build/bench/bench/store_bench
	@build/bench/bench/capture_bench
	@build/bench/bench/routes_bench
	@build/bench/bench/replication_bench

bench-peers: packages
	@$(setup) $(lists)/packages-bench.txt $(lists)/packages-peers.txt
	@cmake --preset bench -DHARBOR_PEERS=ON >/dev/null
	@cmake --build --preset bench -j $(JOBS) --target peer_bench
	@build/bench/bench/peers/peer_bench $(bench_medians)

FUZZ_SECONDS ?= 600
# In processes that end after some seconds: each database that held tables leaves its addresses to no
# later one, whose shadow under the address sanitizer is 128 KiB.
fuzz_limits := -fork=1 -rss_limit_mb=8192 -malloc_limit_mb=2048
FUZZ_TARGETS ?= ospf-decode/decode router-answers/answers tree-exchange/stream ospf-replication/messages \
	$(addprefix ospf-harbor-check/,object record key document)
fuzz: packages
	@cmake --preset fuzz >/dev/null
	@cmake --build --preset fuzz -j $(JOBS) --target $(addsuffix _fuzz,$(notdir $(FUZZ_TARGETS)))
	@set -e; for target in $(FUZZ_TARGETS); do \
		folder=libs/$${target%/*}/fuzz name=$${target#*/}; \
		echo "$$name: $(FUZZ_SECONDS) seconds"; \
		mkdir -p build/fuzz/found/$$name; \
		build/fuzz/$$folder/$${name}_fuzz -max_total_time=$(FUZZ_SECONDS) $(fuzz_limits) \
			-artifact_prefix=build/fuzz/$$name- build/fuzz/found/$$name $$folder/corpus/$$name; \
	done

RANDOM_GRAPHS ?= 10000
random-routes: packages
	@cmake --preset release -DHARBOR_TESTS=ON >/dev/null
	@cmake --build --preset release -j $(JOBS) --target ospf_routes_answers
	@python3 libs/ospf-routes/tests/compare_random.py --graphs $(RANDOM_GRAPHS) \
		build/release/libs/ospf-routes/tests/ospf_routes_answers

# Apart from `make test`, which needs no browser.
browser-test: packages
	@$(setup) $(lists)/packages-browser.txt
	@$(MAKE) --no-print-directory release
	@python3 tools/ospf-harbor/tests/browser/browser_test.py \
		build/release/tools/ospf-harbor/ospf-harbor tests/data build/browser

emit: packages
	@cmake --preset dev >/dev/null
	@cmake --build --preset dev --target emit-source

format:
	@$(setup) $(lists)/packages-format.txt
	@git ls-files '*.cpp' '*.hpp' | xargs clang-format -i

reproducible: packages
	@tests/sections/reproducible.sh $(JOBS)

PREFIX ?= /usr/local
install: packages
	@$(setup) $(lists)/packages-docs.txt
	@cmake --preset release -DCMAKE_INSTALL_PREFIX="$(PREFIX)" -DHARBOR_PAGES=ON >/dev/null
	@cmake --build --preset release -j $(JOBS) --target ospf_harbor_oper ospf_harbor_check ospf-harbor \
		ospf-harbor-pages python_rows pages
	@cmake --install build/release
	@[ -n "$(DESTDIR)" ] || tools/setup/after-install.sh "$$(dirname "$$(grep '/libkelp\.so$$' build/release/install_manifest.txt)")"

abi:
	@tools/abi/compare.py

# Debian's Python, which has the packages that the pages are made with.
PAGES := build/docs
docs: packages
	@$(setup) $(lists)/packages-docs.txt
	@cmake --preset release >/dev/null
	@cmake --build --preset release -j $(JOBS) --target ospf-harbor ospf_harbor_check python_rows
	@/usr/bin/python3 tools/site/build.py $(PAGES) build/release
	@tests/site/check_links.py $(PAGES)

docs-test: docs
	@$(setup) $(lists)/packages-browser.txt
	@python3 tests/site/pages_test.py $(PAGES) build/browser/docs

# The compiler cache stays the one of the user, whom debhelper gives another home.
PACKAGES := build/packages
deb: packages
	@$(setup) $(lists)/packages-deb.txt $(lists)/packages-docs.txt
	@debian/changelog.sh >debian/changelog
	@dh_clean
	@rm -rf $(PACKAGES) && mkdir -p $(PACKAGES)
	@PACKAGES=$(PACKAGES) CCACHE_DIR="$${CCACHE_DIR-$$HOME/.cache/ccache}" \
		dpkg-buildpackage -b --no-sign --no-pre-clean --jobs=$(JOBS) \
		--buildinfo-file=$(PACKAGES)/ospf-harbor-oper.buildinfo --buildinfo-option=-u$(PACKAGES) \
		--changes-file=$(PACKAGES)/ospf-harbor-oper.changes --changes-option=-u$(PACKAGES) \
		>$(PACKAGES)/build.log 2>&1 || { tail -n 40 $(PACKAGES)/build.log; exit 1; }
	@ls $(PACKAGES)/*.deb
	@lintian --fail-on error,warning $(PACKAGES)/ospf-harbor-oper.changes

# As root: a root is made in build/package-test, whose bare part stays for the next time.
package-test: deb
	@tests/packages/fresh_root.sh cmake $(PACKAGES) build/deb build/package-test

clean:
	@rm -rf build
