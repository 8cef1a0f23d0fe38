# The two commands a newcomer needs: `make run` and `make test`.
BUILD ?= build
BUILD_TYPE ?= RelWithDebInfo
JOBS ?= $(shell nproc)

.PHONY: all deps configure build test run clean

all: build

deps:
	@bash scripts/install-deps.sh

configure: deps
	@cmake -S . -B $(BUILD) -G Ninja -DCMAKE_BUILD_TYPE=$(BUILD_TYPE) > $(BUILD).configure.log 2>&1 \
	  || { cat $(BUILD).configure.log; exit 1; }

build: configure
	@cmake --build $(BUILD) -j $(JOBS)

test: build
	@ctest --test-dir $(BUILD) --output-on-failure -j $(JOBS)

run: build
	@./$(BUILD)/apps/vantel/vantel --version
	@./$(BUILD)/apps/vantel/vantel --help

clean:
	@rm -rf $(BUILD) $(BUILD).configure.log
