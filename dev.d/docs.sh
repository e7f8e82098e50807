# The manual of the class library: the guide, and a reference of every public name. Ends with what is wrong in it.
dev_docs() {
  need docs
  docs/reference/make build/docs >&2
  say "build/docs/html/index.html"
}
