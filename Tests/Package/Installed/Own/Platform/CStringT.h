#error A header of the program's own is taken for one of the library's.
