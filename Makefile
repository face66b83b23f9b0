# Short names for the everyday jobs; each installs what it needs first. Everything is built below build/.
JOBS ?= $(shell nproc)
CMAKE_BUILD = cmake --build build/$(1) --parallel $(JOBS)

.PHONY: help run test torture core bench package package-test accessibility-test windows windows-test windows-core-test \
        spreadsheet-test wayland-test mutants coverage release-check format tidy check hooks figures samples clean

help:
	@echo "make run      the program on a copy of the samples (a guided run where there is no display)"
	@echo "make test     all tests"
	@echo "make core     the core and its tests, without Qt"
	@echo "make bench    the benchmark at the limit of 32,767 variables"
	@echo "make counts   the instructions of the main jobs, which must not rise by more than 3 %"
	@echo "make keep-counts  keeps what is counted now"
	@echo "make liveness-test  whether the window lives in long jobs"
	@echo "make package  a Debian package of the program in build/packages"
	@echo "make package-test  installs that package, does the main job in it, removes it"
	@echo "make accessibility-test  the program at the limit as a screen reader sees it"
	@echo "make windows  an installer for Windows in build/packages (builds Qt for Windows first, once)"
	@echo "make windows-test  tests, guided run and installer under wine"
	@echo "make windows-core-test  the core's tests under wine, without Qt"
	@echo "make spreadsheet-test  cells to and from LibreOffice Calc"
	@echo "make wayland-test  guided run under a Wayland compositor, natively and by X11"
	@echo "make mutants  plants faults in the sources that the tests must notice (FOLDER, SEED, COUNT)"
	@echo "make coverage  which lines and branches of the sources the tests run"
	@echo "make release-check  every check, make tidy too, in a clean clone; not coverage, not torture"
	@echo "make torture  the long part of the reliability tests, under the sanitizers (hours)"
	@echo "make format   lays the sources out with clang-format"
	@echo "make tidy     clang-tidy over all sources that are not known to be clean"
	@echo "make check    the quick gate of a commit: layout, words, lint of what changed, the core's tests"
	@echo "make hooks    lays that gate before each commit in this checkout"
	@echo "make figures  how full the rooms of the sources are"
	@echo "make samples  makes the sample applications anew from their tables"
	@echo "make clean    takes away all that was built"

run:
	@JOBS=$(JOBS) scripts/run.sh

test:
	@scripts/setup.sh build
	cmake --preset dev
	$(call CMAKE_BUILD,dev)
	ctest --preset dev --parallel $(JOBS)

torture:
	@scripts/setup.sh build fuzz
	@JOBS=$(JOBS) scripts/trials/torture.sh

core:
	@scripts/setup.sh build
	cmake --preset core
	$(call CMAKE_BUILD,core)
	ctest --preset core --parallel $(JOBS)

bench:
	@scripts/setup.sh build counts
	cmake --preset release
	$(call CMAKE_BUILD,release) --target bench

.PHONY: counts keep-counts
counts:
	@scripts/setup.sh build counts
	cmake --preset counts
	$(call CMAKE_BUILD,counts) --target instructions

keep-counts:
	@scripts/setup.sh build counts
	cmake --preset counts
	$(call CMAKE_BUILD,counts) --target keep-instructions

.PHONY: liveness-test
liveness-test:
	@JOBS=$(JOBS) scripts/trials/liveness.sh

package:
	@JOBS=$(JOBS) scripts/package.sh

package-test: package
	@scripts/trials/package.sh

accessibility-test:
	@JOBS=$(JOBS) scripts/trials/accessibility.sh

windows:
	@JOBS=$(JOBS) scripts/windows.sh

windows-test:
	@JOBS=$(JOBS) scripts/trials/windows.sh

windows-core-test:
	@JOBS=$(JOBS) scripts/trials/windows_core.sh

spreadsheet-test:
	@JOBS=$(JOBS) scripts/trials/spreadsheet.sh

wayland-test:
	@JOBS=$(JOBS) scripts/trials/wayland.sh

mutants:
	@scripts/setup.sh build mutants
	@JOBS=$(JOBS) /usr/bin/python3 scripts/mutants.py

coverage:
	@scripts/setup.sh build coverage
	cmake --preset coverage
	$(call CMAKE_BUILD,coverage)
	rm -rf build/coverage/profiles
	LLVM_PROFILE_FILE=$(CURDIR)/build/coverage/profiles/%4m.profraw ctest --preset coverage --parallel $(JOBS)
	@scripts/coverage.py

release-check:
	@scripts/release_check.sh

format:
	@scripts/setup.sh check
	clang-format -i $$(git ls-files '*.cpp' '*.h')

tidy:
	@scripts/setup.sh build check
	cmake --preset tidy
	@JOBS=$(JOBS) scripts/tidy.py

check:
	@JOBS=$(JOBS) scripts/check.sh

hooks:
	git config core.hooksPath scripts/hooks
	@echo "git runs scripts/hooks now; git config --unset core.hooksPath ends it"

figures:
	@scripts/figures.py

samples:
	@scripts/setup.sh build
	scripts/make/samples.py

clean:
	rm -rf build
