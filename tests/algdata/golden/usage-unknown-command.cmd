algdata shwo good
