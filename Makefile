# Zevrit: `make run` builds and starts the program, `make test` builds and runs every test.
BUILD ?= build
CMAKE_FLAGS ?=
ARGS ?=
JOBS ?= $(shell nproc)
ifeq ($(CI),true)
CMAKE_FLAGS += -DZV_WERROR=ON
endif

.PHONY: all setup setup-test setup-bench configure build run test bench format clean

all: build

setup:
	@scripts/setup.sh build

setup-test:
	@scripts/setup.sh test

setup-bench:
	@scripts/setup.sh bench

configure:
	@cmake -S . -B $(BUILD) -G Ninja $(CMAKE_FLAGS) > /dev/null

build: setup configure
	@cmake --build $(BUILD) -j $(JOBS)

# Only the programs: the tests and benchmarks are not needed to open the window.
run: setup configure
	@cmake --build $(BUILD) -j $(JOBS) --target zevrit zvtool
	@scripts/run.sh $(BUILD)/Zevrit/bin/zevrit $(ARGS)

test: setup-test configure
	@cmake --build $(BUILD) -j $(JOBS)
	@scripts/test.sh $(BUILD)

bench: setup-bench configure
	@cmake --build $(BUILD) -j $(JOBS) --target zv_benchmarks
	@scripts/bench.sh $(BUILD)

format:
	@git ls-files '*.cpp' '*.h' | xargs clang-format -i

clean:
	@rm -rf $(BUILD)
