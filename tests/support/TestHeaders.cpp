// Nothing but the headers that all tests share, compiled once.
