// Replaced by the API layer.
