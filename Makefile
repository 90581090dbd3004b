BUILD_DIR ?= build
CMAKE_FLAGS ?= -G Ninja -DCMAKE_BUILD_TYPE=RelWithDebInfo
JOBS ?= $(shell nproc)
PREFIX ?= /usr/local

.PHONY: all deps configure build run test bench format clean install deb fuzz

all: build

deps:
	@scripts/install-deps

$(BUILD_DIR)/build.ninja:
	cmake -S . -B $(BUILD_DIR) $(CMAKE_FLAGS)

configure: $(BUILD_DIR)/build.ninja

build: deps configure
	cmake --build $(BUILD_DIR) -j $(JOBS)

run: build
	$(BUILD_DIR)/bin/odeleaf

test: build
	cd $(BUILD_DIR) && ctest --output-on-failure -j $(JOBS)

# DESTDIR stages the installation below another folder, as packagers do.
install: build
	DESTDIR="$(DESTDIR)" cmake --install $(BUILD_DIR) --prefix "$(PREFIX)"

deb: build
	cd $(BUILD_DIR) && cpack -G DEB

bench: build
	@scripts/run-benchmarks $(BUILD_DIR)

# Sanitized libFuzzer targets for every reader of outside data, in their own clang build.
# Needs clang and libclang-rt-dev (the libFuzzer runtime): apt-get install clang libclang-rt-14-dev
FUZZ_DIR ?= build-fuzz
FUZZ_TARGETS = fuzz_backup_reader fuzz_csv_reader fuzz_docx_reader fuzz_docx_writer fuzz_pdf_lines fuzz_reader_package fuzz_richtext_reader

fuzz:
	CC=clang CXX=clang++ cmake -S . -B $(FUZZ_DIR) -G Ninja -DCMAKE_BUILD_TYPE=RelWithDebInfo -DODELEAF_FUZZ=ON
	cmake --build $(FUZZ_DIR) -j $(JOBS) --target $(FUZZ_TARGETS)
	scripts/fuzz-seeds $(FUZZ_DIR)/corpus

format:
	git ls-files '*.cpp' '*.h' | xargs clang-format -i

clean:
	rm -rf $(BUILD_DIR)
