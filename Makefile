# The two commands a newcomer needs: `make run` and `make test`.
BUILD ?= build
BUILD_TYPE ?= RelWithDebInfo
JOBS ?= $(shell nproc)

.PHONY: all deps configure build test run install-user install-user-dev deb clean sanitize tsan fuzz mutants

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

# Renders the sample document to a PNG and says where it went.
run: build
	@./$(BUILD)/apps/vantel/vantel render examples/sample.aspectratio -o $(BUILD)/sample.png
	@echo "rendered examples/sample.aspectratio to $(BUILD)/sample.png"

# The whole suite under AddressSanitizer and UndefinedBehaviorSanitizer.
sanitize: deps
	@cmake -S . -B build-sanitize -G Ninja -DCMAKE_BUILD_TYPE=RelWithDebInfo \
	  -DVANTEL_SANITIZERS=address,undefined -DVANTEL_BUILD_BENCH=OFF > build-sanitize.configure.log 2>&1 \
	  || { cat build-sanitize.configure.log; exit 1; }
	@cmake --build build-sanitize -j $(JOBS)
	@ASAN_OPTIONS=detect_leaks=1 UBSAN_OPTIONS=print_stacktrace=1 \
	  ctest --test-dir build-sanitize --output-on-failure -j $(JOBS)

# The tests that render on several threads at once, under ThreadSanitizer.
tsan: deps
	@cmake -S . -B build-tsan -G Ninja -DCMAKE_BUILD_TYPE=RelWithDebInfo \
	  -DVANTEL_SANITIZERS=thread -DVANTEL_BUILD_BENCH=OFF > build-tsan.configure.log 2>&1 \
	  || { cat build-tsan.configure.log; exit 1; }
	@cmake --build build-tsan -j $(JOBS)
	@TSAN_OPTIONS="halt_on_error=1 suppressions=$(CURDIR)/scripts/tsan-suppressions.txt" ctest --test-dir build-tsan --output-on-failure -j $(JOBS) -R Concurren

# Plants small faults one at a time in a fixed sample of sources and prints how
# many the tests catch (about 25 minutes on 2 cores; docs/testing.md).
mutants: build
	@python3 scripts/mutants.py --jobs $(JOBS)

# The document fuzzer (libFuzzer with AddressSanitizer and UBSan, clang only)
# for FUZZ_SECONDS, from a copy of fuzz/corpus and fuzz/regressions in
# build-fuzz/corpus, which keeps what the run finds across runs; crashing
# inputs land in build-fuzz/findings/. The committed folders are only read.
# An input counts as slow past 30 s: a binary property list at the expansion
# bound (a million values) takes about 10 s to decode under the sanitizers.
FUZZ_SECONDS ?= 600
FUZZ_BUILD ?= build-fuzz
fuzz: deps
	@CC=clang CXX=clang++ cmake -S . -B $(FUZZ_BUILD) -G Ninja -DCMAKE_BUILD_TYPE=RelWithDebInfo \
	  -DVANTEL_FUZZ=ON -DVANTEL_SANITIZERS=address,undefined \
	  -DVANTEL_BUILD_TESTS=OFF -DVANTEL_BUILD_BENCH=OFF > $(FUZZ_BUILD).configure.log 2>&1 \
	  || { cat $(FUZZ_BUILD).configure.log; exit 1; }
	@cmake --build $(FUZZ_BUILD) -j $(JOBS) --target document_fuzzer
	@mkdir -p $(FUZZ_BUILD)/corpus $(FUZZ_BUILD)/findings
	@cp fuzz/corpus/* $(FUZZ_BUILD)/corpus/
	@if ls fuzz/regressions/* > /dev/null 2>&1; then cp fuzz/regressions/* $(FUZZ_BUILD)/corpus/; fi
	@UBSAN_OPTIONS=print_stacktrace=1 ./$(FUZZ_BUILD)/fuzz/document_fuzzer $(FUZZ_BUILD)/corpus \
	  -dict=fuzz/plist.dict -max_len=16384 -timeout=30 -rss_limit_mb=2048 \
	  -max_total_time=$(FUZZ_SECONDS) -print_final_stats=1 -artifact_prefix=$(FUZZ_BUILD)/findings/

# The programs (stripped), the MIME type, the thumbnailer, the desktop files (a double-click on a
# document opens the editor), manual pages and completions under ~/.local, for one user: everything a
# plain `cmake --install` installs. The install compiles the MIME database
# itself unless configured with VANTEL_UPDATE_MIME_DATABASE=OFF; compiling it
# here too makes sure.
install-user: build
	@cmake --install $(BUILD) --prefix $(HOME)/.local --strip
	@update-mime-database $(HOME)/.local/share/mime
	@! command -v update-desktop-database >/dev/null || update-desktop-database $(HOME)/.local/share/applications
	@[ ! -f $(HOME)/.local/share/applications/vantel-editor.desktop ] || ! command -v xdg-mime >/dev/null || \
	  xdg-mime default vantel-editor.desktop application/x-vantel-aspect-ratio

# The same and the SDK: static libraries (without debug information, as
# Debian ships them), headers, the CMake package, vantel.pc.
install-user-dev: install-user
	@cmake --install $(BUILD) --prefix $(HOME)/.local --component sdk --strip

# vantel_<version>_<arch>.deb (the programs and desktop files) and
# vantel-dev_<version>_<arch>.deb (the SDK) in $(BUILD)/packages; see
# cmake/VantelPackage.cmake.
deb: build
	@cpack --config $(BUILD)/CPackConfig.cmake -B $(BUILD)/packages > $(BUILD)/cpack.log 2>&1 \
	  || { cat $(BUILD)/cpack.log; exit 1; }
	@ls $(BUILD)/packages/*.deb

clean:
	@rm -rf $(BUILD) build-sanitize build-tsan $(FUZZ_BUILD) *.configure.log
