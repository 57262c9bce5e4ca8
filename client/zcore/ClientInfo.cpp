// filled next
