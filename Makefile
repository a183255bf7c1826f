# The commands that people type. Everything they need, they install or build.
#
#   make demo    set up, build, compile the examples, run the main one on a real file
#   make test    set up, build, run every test
#   make         build the tree that users take, build/dist, and pack it with the manual:
#                build/vexrt-VERSION.zip and .tar.gz  (also: make dist)
#   make tree    only the tree
#   make manual  the reference manual: build/manual/html/index.html, build/manual/man
#   make sweep   the tests that go through many values, at full size
#   make soak    threads under load for minutes: VEXRT_SOAK seconds (300)
#   make bench   set up, build, run the benchmarks against the peers
#   make lint    formatting and static analysis
#   make clean   remove the build folder

BUILD := build
DIST  := $(BUILD)/dist
VERSION := $(shell awk '/^project/ { print $$3 }' CMakeLists.txt)
PAGES := README.md CHANGELOG.md $(shell find include docs tools/manual -type f)
MANUAL := $(BUILD)/manual/html/index.html
PACKED := $(BUILD)/vexrt-$(VERSION).tar.gz

.PHONY: all tree dist manual demo test test-programs sweep soak bench lint clean setup examples
all: dist

setup:
	@tools/setup build run

tree: setup
	@test -f $(BUILD)/lib/build.ninja || cmake -S . -B $(BUILD)/lib -G Ninja --log-level=WARNING
	@cmake --build $(BUILD)/lib

manual: $(MANUAL)
$(MANUAL): $(PAGES) CMakeLists.txt
	@tools/setup package
	@tools/manual/make $(VERSION)

dist: tree $(MANUAL)
	@tools/setup package
	@test -f $(PACKED) && test -z "$$(find $(DIST) $(MANUAL) LICENSE tools/package/pack -newer $(PACKED))" || \
	    tools/package/pack $(VERSION)

examples: tree
	@tools/setup examples
	@test -f $(BUILD)/examples/build.ninja || cmake -S examples -B $(BUILD)/examples -G Ninja \
	    --log-level=WARNING --toolchain $(CURDIR)/$(DIST)/cmake/vexrt-toolchain.cmake
	@cmake --build $(BUILD)/examples

demo: examples
	@tools/demo

test-programs: examples dist
	@tools/setup build run test
	@test -f $(BUILD)/tests/build.ninja || cmake -S tests -B $(BUILD)/tests -G Ninja \
	    --log-level=WARNING --toolchain $(CURDIR)/$(DIST)/cmake/vexrt-toolchain.cmake
	@cmake --build $(BUILD)/tests

test: test-programs
	@tools/test

sweep: test-programs
	@VEXRT_SWEEP=full tools/test -L sweep --verbose

soak: test-programs
	@VEXRT_SOAK=$${VEXRT_SOAK:-300} tools/test -L soak --verbose

bench: tree
	@tools/setup build run bench
	@bench/run

lint: tree
	@tools/setup lint
	@tools/lint

clean:
	rm -rf $(BUILD)
