# The two commands a newcomer needs: `make run` and `make test`.
BUILD ?= build
BUILD_TYPE ?= RelWithDebInfo
JOBS ?= $(shell nproc)

.PHONY: all deps configure build test run install-user clean

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

# The command, the MIME type and the thumbnailer under ~/.local, for one user.
# The install compiles the MIME database itself unless configured with
# VANTEL_UPDATE_MIME_DATABASE=OFF; compiling it here too makes sure.
install-user: build
	@cmake --install $(BUILD) --prefix $(HOME)/.local
	@update-mime-database $(HOME)/.local/share/mime

clean:
	@rm -rf $(BUILD) $(BUILD).configure.log
