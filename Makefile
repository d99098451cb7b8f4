# The two commands of the project:
#   make demo   set everything up on a fresh Debian machine, build, run the
#               tours with sgsh: the graphics objects (examples/objects.sg),
#               then the language (examples/tour.sg), and ends by
#               drawing a figure to $(BUILD)/demo.png (examples/picture.sg)
#   make test   set everything up, build, run all tests
# Further: make test-asan (tests under AddressSanitizer + UBSan), make bench,
# make bench-anchors (the cross-system workloads and their ratios to Qt 5),
# make bench-million (a million objects made, searched, copied, saved, loaded
# and deleted, with the resident memory after each step),
# make fuzz-language (the language fuzz target for FUZZ_SECONDS seconds),
# make fuzz-objectops (the object-operations target), make fuzz-graphicsfile
# (the graphics-file loader), make fuzz (all three),
# make install PREFIX=..., make clean.

BUILD      ?= build
ASAN_BUILD ?= build-asan
BENCH_BUILD ?= build-bench
FUZZ_BUILD ?= build-fuzz
FUZZ_SECONDS ?= 600
PREFIX     ?= /usr/local
JOBS       ?= $(shell nproc)
CMAKE_FLAGS ?=

DEB_PACKAGES := cmake ninja-build g++ pkg-config ccache python3 \
  libboost-dev libboost-log-dev libgtest-dev libgmock-dev libbenchmark-dev libedit-dev \
  libre2-dev libmsgpack-cxx-dev libzstd-dev clang libclang-rt-14-dev libcairo2-dev libpango1.0-dev fonts-dejavu-core

SUDO := $(shell [ "$$(id -u)" = 0 ] || echo sudo)

.PHONY: all deps build demo test test-unit test-install test-asan bench bench-anchors bench-million fuzz-build fuzz fuzz-language fuzz-objectops fuzz-graphicsfile install clean

all: build

# Installs the Debian packages that are missing; does nothing when all are there.
deps:
	@missing=""; for p in $(DEB_PACKAGES); do \
	  dpkg-query -W -f='$${Status}' $$p 2>/dev/null | grep -q "install ok installed" || missing="$$missing $$p"; \
	done; \
	if [ -n "$$missing" ]; then \
	  echo "Installing:$$missing"; \
	  $(SUDO) apt-get update -qq && DEBIAN_FRONTEND=noninteractive $(SUDO) apt-get install -y -qq $$missing >/dev/null; \
	fi

$(BUILD)/build.ninja: | deps
	cmake -S . -B $(BUILD) -G Ninja -DCMAKE_BUILD_TYPE=RelWithDebInfo $(CMAKE_FLAGS)

build: deps $(BUILD)/build.ninja
	cmake --build $(BUILD) -j $(JOBS)

demo: build
	cd $(BUILD) && ./shell/sgsh $(CURDIR)/examples/objects.sg
	./$(BUILD)/shell/sgsh examples/tour.sg
	cd $(BUILD) && ./shell/sgsh $(CURDIR)/examples/picture.sg
	@echo "The figure's picture: $(BUILD)/demo.png (and demo.svg, demo.pdf; dark theme: demo-dark.png)"

test: test-unit test-install

test-unit: build
	cd $(BUILD) && ctest --output-on-failure -j $(JOBS)

# Installs into a staging folder and builds a consumer project against it.
test-install: build
	rm -rf $(BUILD)/stage $(BUILD)/consumer
	cmake --install $(BUILD) --prefix $(CURDIR)/$(BUILD)/stage >/dev/null
	cmake -S tests/install -B $(BUILD)/consumer -G Ninja -DCMAKE_PREFIX_PATH=$(CURDIR)/$(BUILD)/stage >/dev/null
	cmake --build $(BUILD)/consumer >/dev/null
	./$(BUILD)/consumer/consumer && echo "install: consumer project found and linked sgutils"

test-asan: deps
	cmake -S . -B $(ASAN_BUILD) -G Ninja -DCMAKE_BUILD_TYPE=Debug -DSG_SANITIZE=ON -DSG_BUILD_BENCH=OFF $(CMAKE_FLAGS)
	cmake --build $(ASAN_BUILD) -j $(JOBS)
	cd $(ASAN_BUILD) && ASAN_OPTIONS=detect_leaks=1:abort_on_error=0 UBSAN_OPTIONS=print_stacktrace=1:halt_on_error=1 \
	  LSAN_OPTIONS=suppressions=$(CURDIR)/tests/lsan.supp:print_suppressions=0 \
	  ctest --output-on-failure -j $(JOBS)

bench: deps
	cmake -S . -B $(BENCH_BUILD) -G Ninja -DCMAKE_BUILD_TYPE=Release -DSG_BUILD_TESTS=OFF $(CMAKE_FLAGS)
	cmake --build $(BENCH_BUILD) -j $(JOBS) --target sgbench
	./$(BENCH_BUILD)/bench/sgbench $(BENCH_ARGS)

# The cross-system workloads: the Qt 5 and GObject anchors (ANCHORS, whose
# run_all.sh --install sets up their packages) and our port, one after the
# other, ANCHOR_RUNS times; prints the medians and the ratios to Qt 5.
ANCHORS ?= $(CURDIR)/../shared/perf-anchors
ANCHOR_RUNS ?= 1
bench-anchors: deps
	cmake -S . -B $(BENCH_BUILD) -G Ninja -DCMAKE_BUILD_TYPE=Release -DSG_BUILD_TESTS=OFF $(CMAKE_FLAGS)
	cmake --build $(BENCH_BUILD) -j $(JOBS) --target sg_anchor_workloads
	bench/anchors/run_anchors.sh $(ANCHORS) ./$(BENCH_BUILD)/bench/anchors/sg_anchor_workloads $(ANCHOR_RUNS)

# A million graphics objects in one run (bench/million), in the
# RelWithDebInfo tree: MILLION_ARGS gives the count and the steps
# (e.g. "200000 fc"; see the program's head comment).
MILLION_ARGS ?=
bench-million: build
	./$(BUILD)/bench/million/sg_million_objects $(MILLION_ARGS)

# The language fuzz target: clang, libFuzzer, ASan and UBSan. It starts from
# the script tests and keeps what it learns in $(FUZZ_BUILD)/corpus; inputs
# that fail land in $(FUZZ_BUILD)/findings. One process, at low priority;
# FUZZ_FLAGS passes more libFuzzer flags (CI fixes the seed).
fuzz-build: deps
	CC=clang CXX=clang++ cmake -S . -B $(FUZZ_BUILD) -G Ninja -DCMAKE_BUILD_TYPE=RelWithDebInfo -DSG_FUZZ=ON \
	  -DSG_BUILD_TESTS=OFF -DSG_BUILD_BENCH=OFF $(CMAKE_FLAGS)
	cmake --build $(FUZZ_BUILD) -j $(JOBS) --target language_fuzzer objectops_fuzzer graphicsfile_fuzzer

fuzz-language: fuzz-build
	mkdir -p $(FUZZ_BUILD)/corpus $(FUZZ_BUILD)/seeds $(FUZZ_BUILD)/findings
	cp tests/scripts/*.sg tests/scripts/objects/*.sg $(FUZZ_BUILD)/seeds/
	cd $(FUZZ_BUILD) && ASAN_OPTIONS=detect_leaks=1 UBSAN_OPTIONS=print_stacktrace=1:halt_on_error=1 \
	  nice -n 10 ./fuzz/language_fuzzer corpus seeds -max_len=4096 -timeout=20 -rss_limit_mb=2048 \
	  -max_total_time=$(FUZZ_SECONDS) -print_final_stats=1 -artifact_prefix=findings/ $(FUZZ_FLAGS)

# The object-operations target: starts from the seeds in fuzz/corpus/objectops
# and keeps what it learns in $(FUZZ_BUILD)/corpus-objectops; an input it
# found worth keeping can be copied to fuzz/corpus/objectops, one that failed
# (from $(FUZZ_BUILD)/findings-objectops) to fuzz/regressions/objectops,
# where the classes' tests replay it.
fuzz-objectops: fuzz-build
	mkdir -p $(FUZZ_BUILD)/corpus-objectops $(FUZZ_BUILD)/findings-objectops
	cd $(FUZZ_BUILD) && ASAN_OPTIONS=detect_leaks=1 UBSAN_OPTIONS=print_stacktrace=1:halt_on_error=1 \
	  nice -n 10 ./fuzz/objectops_fuzzer corpus-objectops $(CURDIR)/fuzz/corpus/objectops -max_len=1024 -timeout=20 \
	  -rss_limit_mb=2048 -max_total_time=$(FUZZ_SECONDS) -print_final_stats=1 -artifact_prefix=findings-objectops/ $(FUZZ_FLAGS)

# The graphics-file target: starts from the saved-figure bodies in
# fuzz/corpus/graphicsfile (made by fuzz/make_graphicsfile_seeds.sh) and keeps
# what it learns in $(FUZZ_BUILD)/corpus-graphicsfile; a failed input lands in
# $(FUZZ_BUILD)/findings-graphicsfile (keep it in fuzz/regressions/graphicsfile).
fuzz-graphicsfile: fuzz-build
	mkdir -p $(FUZZ_BUILD)/corpus-graphicsfile $(FUZZ_BUILD)/findings-graphicsfile
	cd $(FUZZ_BUILD) && ASAN_OPTIONS=detect_leaks=1 UBSAN_OPTIONS=print_stacktrace=1:halt_on_error=1 \
	  nice -n 10 ./fuzz/graphicsfile_fuzzer corpus-graphicsfile $(CURDIR)/fuzz/corpus/graphicsfile -max_len=65536 -timeout=20 \
	  -rss_limit_mb=2048 -max_total_time=$(FUZZ_SECONDS) -print_final_stats=1 -artifact_prefix=findings-graphicsfile/ $(FUZZ_FLAGS)

# Every fuzz target, one after the other, each for FUZZ_SECONDS.
fuzz: fuzz-language fuzz-objectops fuzz-graphicsfile

install: build
	cmake --install $(BUILD) --prefix $(PREFIX)

clean:
	rm -rf $(BUILD) $(ASAN_BUILD) $(BENCH_BUILD) $(FUZZ_BUILD)
